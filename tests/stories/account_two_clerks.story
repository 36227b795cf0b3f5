# Two programs at the same account: a record lock lasts from the first key to OK or Cancel.
@ --today 2026-03-05 --country Canada
> {"sql":"INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (7, '1000', 'Cash', 1)"}
> {"sql":"INSERT INTO GLActual (GLAccountID, GLYear, ActualBudget) VALUES (7, 2026, 'A')"}
> {"open":"TfrmGLAccounts"}
> {"key":"Enter"}
2> {"open":"TfrmGLAccounts"}
2> {"key":"Enter"}
> {"set":"frmGLAccount.editAccountName","value":"Petty Cash"}
2> {"set":"frmGLAccount.editAccountName","value":"Till"}
2< {"waiting":{"dialog":{"kind":"warning","buttons":["Yes","No"],"text":"The 'tblGLAccnt' record you are trying to edit or delete is currently locked. Do you want to try again?\r\rThis would happen if the record (customer, invoice, etc.) is currently being edited by another person or process."}}}
2> {"answer":"No"}
2< {"ok":false,"messages":[],"finished":[{"aborted":true}]}

# The lock keeps it from being deleted, with all that would go with it.
2> {"click":"frmGLAccounts.mnuDelete"}
2> {"answer":"Yes"}
2< {"waiting":{"dialog":{"kind":"warning"}}}
2> {"answer":"No"}
2< {"ok":false,"messages":[]}
2> {"sql":"SELECT count(*) FROM GLActual"}
2< {"rows":[[1]]}

# Yes tries again: once the other is done, what was read is old.
2> {"set":"frmGLAccount.editAccountName","value":"Till"}
2< {"waiting":{"dialog":{"kind":"warning"}}}
> {"click":"frmGLAccount.btnOK"}
2> {"answer":"Yes"}
2< {"ok":false,"messages":[{"kind":"warning","text":"A record you are trying to edit or delete on 'tblGLAccnt' has been changed or deleted since last retrieved.\rData will now be refreshed."}]}
2> {"state":"frmGLAccount"}
2< {"state":{"controls":{"editAccountName":{"value":"Petty Cash"}}}}
2> {"set":"frmGLAccount.editAccountName","value":"Till"}
2> {"click":"frmGLAccount.btnOK"}
2> {"sql":"SELECT AccountName FROM GLAccnt"}
2< {"rows":[["Till"]]}

# New accounts at the same time get ids of their own; the same number is the later one's to mend.
> {"click":"frmGLAccounts.mnuNew"}
2> {"click":"frmGLAccounts.mnuNew"}
> {"set":"frmGLAccount.editGLAccount","value":"2000"}
> {"set":"frmGLAccount.editAccountName","value":"Payables"}
> {"set":"frmGLAccount.radAccountType","value":"Liability"}
2> {"set":"frmGLAccount.editGLAccount","value":"2000"}
2> {"set":"frmGLAccount.editAccountName","value":"Loans"}
2> {"set":"frmGLAccount.radAccountType","value":"Liability"}
> {"click":"frmGLAccount.btnOK"}
2> {"click":"frmGLAccount.btnOK"}
2< {"ok":false,"messages":[{"text":"Account no. and Name must be unique"}]}
2> {"set":"frmGLAccount.editGLAccount","value":"2100"}
2> {"click":"frmGLAccount.btnOK"}
2> {"sql":"SELECT GLAccountID, GLAccount FROM GLAccnt ORDER BY GLAccountID"}
2< {"rows":[[7,"1000"],[8,"2000"],[9,"2100"]]}

# What the other deleted is still in the list of the first until it looks.
> {"grid":"frmGLAccounts.grdGLAccnt","do":"locate","values":{"GLAccount":"1000"}}
2> {"grid":"frmGLAccounts.grdGLAccnt","do":"locate","values":{"GLAccount":"1000"}}
2> {"key":"Enter"}
> {"click":"frmGLAccounts.mnuDelete"}
> {"answer":"Yes"}
< {"ok":true,"messages":[]}
2> {"set":"frmGLAccount.editAccountName","value":"Drawer"}
2< {"ok":false,"messages":[{"kind":"warning","text":"A record you are trying to edit or delete on 'tblGLAccnt' has been changed or deleted since last retrieved.\rData will now be refreshed."}],"closed":["frmGLAccount"]}
2> {"click":"frmGLAccounts.mnuRefresh"}
2> {"state":"frmGLAccounts"}
2< {"state":{"controls":{"grdGLAccnt":{"total":2}}}}
2> {"grid":"frmGLAccounts.grdGLAccnt","do":"locate","values":{"GLAccount":"2100"}}
> {"click":"frmGLAccounts.mnuRefresh"}
> {"grid":"frmGLAccounts.grdGLAccnt","do":"locate","values":{"GLAccount":"2100"}}
> {"click":"frmGLAccounts.mnuDelete"}
> {"answer":"Yes"}
2> {"click":"frmGLAccounts.mnuDelete"}
2> {"answer":"Yes"}
2< {"ok":false,"messages":[{"kind":"warning","text":"A record you are trying to edit or delete on 'tblGLAccnt' has been changed or deleted since last retrieved.\rData will now be refreshed."}]}
2> {"state":"frmGLAccounts"}
2< {"state":{"controls":{"grdGLAccnt":{"rows":[{"cells":{"GLAccount":"2000"},"active":true}]}}}}
> {"grid":"frmGLAccounts.grdGLAccnt","do":"locate","values":{"GLAccount":"2000"}}
> {"click":"frmGLAccounts.mnuDelete"}
> {"answer":"Yes"}
2> {"key":"Enter"}
2< {"ok":false,"messages":[{"kind":"error","text":"This record has been deleted by another user"}]}
2> {"screens":true}
2< {"screens":[{},{"name":"frmGLAccounts"}]}
