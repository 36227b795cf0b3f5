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
