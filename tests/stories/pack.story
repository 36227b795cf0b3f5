# Repairs and packs all tables; alone in the company.
@ --today 2026-03-05
> {"sql":"INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)"}
> {"menu":"Pack/Repair"}
< {"waiting":{"modal":"frmPack"}}
> {"state":"frmPack"}
< {"state":{"title":"Pack/Repair Tables","controls":{"btnOK":{},"btnCancel":{},"ProgressBar":{"kind":"progress"}},"default":"btnOK"}}
> {"click":"frmPack.btnCancel"}
< {"closed":["frmPack"]}

# Another user; then a form of our own.
2> {"menu":"GL > Accounts"}
> {"menu":"Pack/Repair"}
> {"click":"frmPack.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"No one else can be using Quillon Enterprise Accounting"}],"waiting":{"modal":"frmPack"}}
2> {"click":"frmGLAccounts.mnuNew"}
2> {"close":"frmGLAccount"}
2> {"quit":true}
2!
> {"click":"frmPack.btnCancel"}
> {"menu":"GL > Accounts"}
> {"menu":"Pack/Repair"}
> {"click":"frmPack.btnOK"}
< {"ok":false,"messages":[{"text":"All forms must be closed before running this option"}]}
> {"click":"frmPack.btnCancel"}
> {"close":"frmGLAccounts"}

> {"menu":"Pack/Repair"}
> {"click":"frmPack.btnOK"}
< {"ok":true,"messages":[],"closed":["frmPack"],"waiting":null}
> {"menu":"GL > Accounts"}
> {"state":"frmGLAccounts"}
< {"state":{"controls":{"grdGLAccnt":{"rows":[{"cells":{"GLAccount":"1000"}}]}}}}
> {"close":"frmGLAccounts"}
> {"quit":true}
