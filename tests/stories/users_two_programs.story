# An administrator and a clerk in the same company: rights are read anew at each check, and there is always somebody who
# may give them.
= anna ["Secret\n"]
@ --today 2026-03-05 --country Canada --user ANNA --password-file {folder}/anna
> {"sql":"INSERT INTO Users (UserName, Password, Security, JVs, GLAccounts) VALUES ('ANNA', 'Secret', true, true, true)"}
> {"sql":"INSERT INTO Users (UserName, Password, JVs, GLAccounts, YourCompany) VALUES ('BEN', 'ben', true, true, true)"}
@ --today 2026-03-05 --country Canada --user ANNA --password-file {folder}/anna
< {"ok":true,"messages":[],"waiting":null}

# BEN logs in beside her, and works with accounts. She takes the right away: what is open stays, it is not opened again.
= anna ["no longer\n"]
2> {"set":"frmLogin.editUserName","value":"BEN"}
2> {"set":"frmLogin.editPassword","value":"ben"}
2> {"click":"frmLogin.btnOK"}
2< {"ok":true,"messages":[],"waiting":null}
2> {"menu":"GL > JVs"}
2> {"menu":"GL > Accounts"}
2< {"opened":["frmGLAccounts"]}
> {"menu":"General > Security"}
> {"grid":"frmUsers.grdUsers","do":"locate","values":{"UserName":"BEN"}}
> {"click":"frmUsers.mnuEdit"}
> {"set":"frmUser.chkGLAccounts","value":false}
2> {"menu":"GL > Accounts"}
2< {"ok":true,"messages":[]}
> {"click":"frmUser.btnOK"}
2> {"click":"frmGLAccounts.mnuNew"}
2< {"ok":true,"opened":["frmGLAccount"]}
2> {"close":"frmGLAccount"}
2> {"close":"frmGLAccounts"}
2> {"menu":"GL > Accounts"}
2< {"ok":false,"opened":[],"messages":[{"kind":"stop","caption":"Quillon Enterprise Accounting Security",
   "text":"BEN is not allowed access to GL Accounts."}]}
2> {"menu":"GL > JVs"}
2< {"ok":true,"messages":[]}
> {"click":"frmUsers.mnuEdit"}
> {"click":"frmUser.btnGLAll"}
> {"set":"frmUser.chkSecurity","value":true}
> {"click":"frmUser.btnOK"}
2> {"menu":"GL > Accounts"}
2< {"ok":true,"messages":[],"opened":["frmGLAccounts"]}

# Two at the same user: the second waits, gives up, and sees what the first saved.
2> {"menu":"General > Security"}
2> {"grid":"frmUsers.grdUsers","do":"locate","values":{"UserName":"ANNA"}}
> {"grid":"frmUsers.grdUsers","do":"locate","values":{"UserName":"ANNA"}}
> {"click":"frmUsers.mnuEdit"}
> {"set":"frmUser.chkBanks","value":true}
2> {"click":"frmUsers.mnuEdit"}
2> {"click":"frmUser.btnMfgAll"}
2< {"waiting":{"dialog":{"kind":"warning","buttons":["Yes","No"],"text":"The 'tblUsers' record you are trying to edit or delete is currently locked. Do you want to try again?\r\rThis would happen if the record (customer, invoice, etc.) is currently being edited by another person or process."}}}
2> {"answer":"No"}
2< {"ok":false,"messages":[]}
2> {"close":"frmUser"}
2> {"click":"frmUsers.mnuDelete"}
2> {"answer":"OK"}
2< {"waiting":{"dialog":{"kind":"warning","buttons":["Yes","No"]}}}
2> {"answer":"No"}
2< {"ok":false,"messages":[]}
> {"click":"frmUser.btnOK"}
2> {"click":"frmUsers.mnuEdit"}
2> {"state":"frmUser"}
2< {"state":{"controls":{"chkBanks":{"data":true}}}}

# She gave BEN the right Security. He takes hers, and she cannot give it back; then neither takes the last one.
2> {"set":"frmUser.chkSecurity","value":false}
2> {"click":"frmUser.btnOK"}
2> {"close":"frmUsers"}
2< {"ok":true,"closed":["frmUsers"],"messages":[]}
> {"sql":"SELECT UserName FROM Users"}
< {"ok":false,"error":{"text":"ANNA is not allowed access to Security."}}
> {"grid":"frmUsers.grdUsers","do":"locate","values":{"UserName":"BEN"}}
> {"click":"frmUsers.mnuEdit"}
> {"set":"frmUser.chkSecurity","value":false}
> {"click":"frmUser.btnOK"}
< {"ok":true,"messages":[],"focus":"frmUsers.grdUsers[1].UserName"}
> {"close":"frmUsers"}
< {"ok":false,"closed":[],"messages":[{"kind":"stop","text":"Exit not allowed yet...\r\rIf security is active (one or more users specified), then at least one user must be allowed access to Security."}]}
> {"quit":true}
< {"ok":false,"closed":[],"messages":[{"kind":"stop"}]}
2> {"menu":"General > Security"}
2< {"ok":false,"messages":[{"text":"BEN is not allowed access to Security."}]}
> {"click":"frmUsers.mnuEdit"}
> {"set":"frmUser.chkSecurity","value":true}
> {"click":"frmUser.btnOK"}
> {"close":"frmUsers"}
< {"ok":true,"closed":["frmUsers"],"messages":[]}
2> {"menu":"General > Security"}
2< {"ok":true,"opened":["frmUsers"]}

# Who takes another name goes on under it, with its rights as they change; a name that is taken changes nothing.
2> {"grid":"frmUsers.grdUsers","do":"locate","values":{"UserName":"BEN"}}
2> {"click":"frmUsers.mnuEdit"}
2> {"set":"frmUser.editUserName","value":"ANNA"}
2> {"click":"frmUser.btnOK"}
2< {"ok":false,"messages":[{"text":"User already exists"}]}
2> {"set":"frmUser.editUserName","value":"BENNO"}
2> {"click":"frmUser.btnOK"}
2< {"ok":true,"messages":[]}
2> {"menu":"GL > Budget"}
2< {"ok":true,"messages":[]}
2> {"click":"frmUsers.mnuEdit"}
2> {"set":"frmUser.editUserName","value":"BERT"}
2> {"set":"frmUser.chkGLHistory","value":false}
2> {"click":"frmUser.btnOK"}
2> {"sql":"SELECT GLHistory FROM Users WHERE UserName = 'BERT'"}
2< {"rows":[[false]]}
2> {"menu":"GL > History"}
2< {"ok":false,"messages":[{"kind":"stop","text":"BERT is not allowed access to GL History."}]}
