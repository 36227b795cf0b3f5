# A table of the company's settings that was lost is made anew at the start, and is asked for; the rest is untouched.
@ --today 2026-03-05
> {"sql":"INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)"}
> {"quit":true}
= company/Company.DAT []
@ --today 2026-03-05
< {"messages":[{"kind":"warning","caption":"Quillon Enterprise Accounting","text":"Error opening database '{folder}/company'...\rThe header of 'Company.DAT' is damaged. Run Pack/Repair on the company.\rThe program will now attempt to repair it."}],
   "opened":["frmCompany"],"waiting":null,"focus":"frmCompany.editCompanyName"}
> {"sql":"SELECT CompanyName, FiscalYear FROM Company"}
< {"rows":[["Data lost: please re-enter",1990]]}
> {"sql":"SELECT AccountName FROM GLAccnt"}
< {"rows":[["Cash"]]}
> {"quit":true}
@ --today 2026-03-05
< {"messages":[],"opened":[],"waiting":null}
> {"quit":true}

# A journal that cannot be read keeps everybody out until somebody decides to go on without it; it is kept.
= company/Quillon.JNL [["\u00ff", 300000]]
@ --today 2026-03-05
< {"waiting":{"dialog":{"kind":"warning","buttons":["Yes","No"],"default":"No","text":"Error opening database '{folder}/company'...\rThe journal of this company is damaged. It holds what was saved last: where the company was not closed since, those changes may be missing or there in part.\r\rSet the journal aside and open the company without it? If you have a good backup, answer No and use that instead."}}}
> {"answer":"No"}
< {"messages":[],"waiting":null}
> {"menu":"GL > Accounts"}
< {"ok":false}
? company ["...", "Quillon.JNL", "Quillon.LCK", "..."]
@ --today 2026-03-05
> {"answer":"Yes"}
< {"messages":[{"kind":"warning","text":"The journal begins anew; the damaged one is kept beside it.\r\rPlease run Pack/Repair now, and check what was entered last."}],"waiting":null}
> {"sql":"SELECT AccountName FROM GLAccnt"}
< {"rows":[["Cash"]]}
> {"quit":true}
? company ["...", "Quillon.JNL", "Quillon.JNL~damaged", "..."]
@ --today 2026-03-05
< {"messages":[],"opened":[],"waiting":null}
