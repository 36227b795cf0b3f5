# People and their rights: no login before the first user, names and passwords to the letter, every right by its group.
= anna [" Secret\n"]
@ --today 2026-03-05 --country Canada
< {"ok":true,"messages":[],"waiting":null}
> {"menu":"General > Security"}
< {"opened":["frmUsers"]}
> {"state":"frmUsers"}
< {"state":{"title":"Users","controls":{"grdUsers":{"kind":"grid","total":0,"columns":[{"name":"UserName"}]}},
   "menus":[{"name":"mnuNew"},{"name":"mnuEdit"},{"name":"mnuDelete"},{"name":"mnuRefresh"}]}}
| mnuEdit
| mnuDelete
> {"click":"frmUsers.{1}"}
< {"ok":false,"messages":[],"finished":[{"aborted":true}]}
|

# A new user has no rights. Nobody is without a name, and no name is there twice, in this case.
> {"click":"frmUsers.mnuNew"}
< {"opened":["frmUser"],"focus":"frmUser.editUserName"}
> {"state":"frmUser"}
< {"state":{"title":"New User","default":"btnOK","controls":{"pagAll":{"pages":["General","AP","AR","GL","Inventory",
   "Sales Analysis","Mfg"]},"chkSecurity":{"caption":"Security"},"chkGLBalances":{"caption":"GL Totals"}}}}
> {"click":"frmUser.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Field 'User Name' must have a value"}],"focus":"frmUser.editUserName"}
> {"set":"frmUser.editUserName","value":"ANNA"}
> {"set":"frmUser.editPassword","value":" Secret"}
> {"state":"frmUser"}
< {"state":{"controls":{"editPassword":{"value":"********","data":null}}}}
> {"click":"frmUser.btnOK"}
< {"ok":true,"messages":[],"closed":["frmUser"],"focus":"frmUsers.grdUsers[0].UserName"}
| General | YourCompany, Banks, BankBook, BankRec, Currencies, PackRepair, Import, Security, Purge
| AP | Vendors, APInvoices, APCheques, APReports, VendorTypes
| AR | Customers, ARInvoices, ARPayments, ARReports, Salesmen, CustomerTypes, Taxes
| GL | GLAccounts, JVs, GLBudget, GLReports, GLBalances, GLHistory
| Inv | Items, PhysicalCount, InvAdjustments, InvReports, ItemTypes, Warehouses, InvTotals, InvHistory, ItemSubtypes, Lots
| PO | PurchaseOrders, InvReceipts, POReports, VendorItems, PurchaseHistory, PurchasesReports
| SO | SalesOrders, Shipments, SOReports, Carriers, PriceLists, Prices
| Sales | SalesHistory, SalesReports, SalesCharts
| Mfg | MfgOrders, MfgReceipts, MfgReports, Resources
> {"sql":"SELECT COUNT(*) FROM Users WHERE Password = ' Secret' AND NOT (true IN ({2}))"}
< {"rows":[[1]]}
> {"click":"frmUsers.mnuEdit"}
> {"click":"frmUser.btn{1}All"}
> {"click":"frmUser.btnOK"}
< {"ok":true,"messages":[]}
> {"sql":"SELECT COUNT(*) FROM Users WHERE NOT (false IN ({2}))"}
< {"rows":[[1]]}
> {"click":"frmUsers.mnuEdit"}
> {"click":"frmUser.btn{1}None"}
> {"click":"frmUser.btnOK"}
> {"sql":"SELECT COUNT(*) FROM Users WHERE NOT (true IN ({2}))"}
< {"rows":[[1]]}
|
> {"click":"frmUsers.mnuNew"}
> {"set":"frmUser.editUserName","value":"ANNA"}
> {"click":"frmUser.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"User already exists"}],"closed":[],"focus":"frmUser.editUserName"}
> {"set":"frmUser.editUserName","value":"anna"}
> {"set":"frmUser.chkJVs","value":true}
> {"close":"frmUser"}
< {"waiting":{"dialog":{"kind":"confirmation","text":"Do you want to save changes?","buttons":["Yes","No","Cancel"]}}}
> {"answer":"Cancel"}
< {"ok":false,"closed":[]}
> {"close":"frmUser"}
> {"answer":"Yes"}
< {"ok":true,"closed":["frmUser"],"focus":"frmUsers.grdUsers[1].UserName"}
> {"grid":"frmUsers.grdUsers","do":"locate","values":{"UserName":"anna"}}
> {"key":"Enter"}
< {"opened":["frmUser"]}
> {"set":"frmUser.chkJVs","value":false}
> {"close":"frmUser"}
> {"answer":"No"}
< {"ok":true,"closed":["frmUser"]}
> {"sql":"SELECT UserName, JVs, GLAccounts FROM Users ORDER BY UserName"}
< {"rows":[["ANNA",false,false],["anna",true,false]]}

# Until the next login everybody may do everything. But nobody leaves a company whose users nobody may change.
> {"menu":"GL > Accounts"}
< {"opened":["frmGLAccounts"]}
> {"close":"frmGLAccounts"}
> {"close":"frmUsers"}
< {"ok":false,"closed":[],"messages":[{"kind":"stop","caption":"Quillon Enterprise Accounting Security","text":"Exit not allowed yet...\r\rIf security is active (one or more users specified), then at least one user must be allowed access to Security."}]}
> {"menu":"File > Exit"}
< {"ok":true,"closed":[],"messages":[{"kind":"stop","text":"Exit not allowed yet...\r\rIf security is active (one or more users specified), then at least one user must be allowed access to Security."}]}
> {"grid":"frmUsers.grdUsers","do":"locate","values":{"UserName":"ANNA"}}
> {"click":"frmUsers.mnuEdit"}
> {"set":"frmUser.chkSecurity","value":true}
> {"set":"frmUser.chkGLAccounts","value":true}
> {"click":"frmUser.btnOK"}
> {"close":"frmUsers"}
< {"ok":true,"closed":["frmUsers"],"messages":[]}

# The login: name and password as they were entered, and no limit on tries.
@ --today 2026-03-05 --country Canada
< {"closed":["frmSplash"],"waiting":{"modal":"frmLogin"}}
> {"state":"frmLogin"}
< {"state":{"title":"Quillon Enterprise Accounting Security","controls":{
   "lblDatabase":{"caption":"Database: {folder}/company"},"editPassword":{"value":""}}}}
> {"sql":"SELECT * FROM Users"}
< {"ok":false,"error":{"text":"Nobody has logged in who is allowed access to Security."}}
> {"open":"TfrmGLAccounts"}
< {"ok":false}
| ANNA | secret
| Anna | Secret
| ANNA | Secret
| nobody | Secret
> {"set":"frmLogin.editUserName","value":"{1}"}
> {"set":"frmLogin.editPassword","value":"{2}"}
> {"click":"frmLogin.btnOK"}
< {"messages":[{"kind":"stop","caption":"Quillon Enterprise Accounting Security","text":"Invalid User Name or Password."}],
   "waiting":{"modal":"frmLogin"},"focus":"frmLogin.editPassword"}
> {"state":"frmLogin"}
< {"state":{"controls":{"editUserName":{"value":"{1}"},"editPassword":{"value":""}}}}
|

# Who gives up has a bare main window: no screen of the company, and none of its rows.
> {"click":"frmLogin.btnCancel"}
< {"ok":true,"messages":[],"closed":["frmLogin"],"waiting":null}
> {"open":"TfrmGLAccounts"}
< {"ok":false,"error":{"text":"'TfrmGLAccounts' cannot be opened now: 'frmQuillon.mnuGLAccounts' is disabled"},"opened":[]}
> {"menu":"GL > Accounts"}
< {"ok":false,"error":{"text":"'frmQuillon.mnuGLAccounts' is disabled"}}
> {"click":"frmQuillon.btnJVs"}
< {"ok":false}
> {"sql":"SELECT * FROM Users"}
< {"ok":false,"error":{"text":"Nobody has logged in who is allowed access to Security."}}

# Each screen is opened by its right, wherever the way to it begins.
@ --today 2026-03-05 --country Canada
> {"set":"frmLogin.editUserName","value":"anna"}
> {"click":"frmLogin.btnOK"}
< {"ok":true,"messages":[],"waiting":null}
> {"set":"frmQuillon.cboSystem","value":"GL"}
| {"menu":"GL > Accounts"} | GL Accounts
| {"click":"frmQuillon.btnAccounts"} | GL Accounts
| {"open":"TfrmGLAccounts"} | GL Accounts
| {"menu":"General > Security"} | Security
| {"menu":"General > Settings"} | Security
| {"menu":"General > Your Company"} | Your Company
> {1}
< {"ok":false,"opened":[],"waiting":null,"messages":[{"kind":"stop","caption":"Quillon Enterprise Accounting Security",
   "text":"anna is not allowed access to {2}."}],"finished":[{"aborted":true}]}
|
> {"sql":"SELECT * FROM Users"}
< {"ok":false,"error":{"text":"anna is not allowed access to Security."}}
> {"menu":"GL > JVs"}
< {"ok":true,"messages":[],"opened":["frmJVs"]}
> {"click":"frmJVs.mnuNew"}
> {"click":"frmJV.btnNew"}
> {"key":"1"}
< {"waiting":{"modal":"frmGLAccountSearch"}}
> {"click":"frmGLAccountSearch.btnGLAccounts"}
< {"ok":false,"opened":[],"messages":[{"kind":"stop","text":"anna is not allowed access to GL Accounts."}]}

# A right that is null is none. When the last user is gone, the checks are off.
@ --user ANNA --password-file {folder}/anna
< {"ok":true,"messages":[],"waiting":null}
> {"sql":"UPDATE Users SET GLAccounts = null WHERE UserName = 'ANNA'"}
> {"open":"TfrmGLAccounts"}
< {"ok":false,"messages":[{"text":"ANNA is not allowed access to GL Accounts."}]}
> {"menu":"General > Security"}
> {"click":"frmUsers.mnuDelete"}
< {"waiting":{"dialog":{"kind":"confirmation","text":"Delete 'ANNA'?","buttons":["OK","Cancel"]}}}
> {"answer":"Cancel"}
< {"ok":false,"messages":[],"finished":[{"aborted":true}]}
> {"click":"frmUsers.mnuDelete"}
> {"answer":"OK"}
< {"ok":true,"messages":[]}
> {"close":"frmUsers"}
< {"ok":false,"messages":[{"kind":"stop"}]}
> {"click":"frmUsers.mnuDelete"}
< {"waiting":{"dialog":{"text":"Delete 'anna'?"}}}
> {"answer":"OK"}
> {"close":"frmUsers"}
< {"ok":true,"closed":["frmUsers"]}
> {"open":"TfrmGLAccounts"}
< {"ok":true,"opened":["frmGLAccounts"]}
