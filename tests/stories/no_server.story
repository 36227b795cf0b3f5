# Settings that name a store server: one message, and nothing is opened or made.
= settings/Quillon.ini ["[General]\nRemoteAddress=192.0.2.7\nDatabase={folder}/company\n[Companies]\nAcme={folder}/company\n"]
@ none
< {"messages":[{"kind":"warning","caption":"Quillon Enterprise Accounting","text":"The settings name a remote store server (RemoteHost or RemoteAddress).\rThis version works on company folders only.\r\rRemove the setting to open a company: {folder}/settings/Quillon.ini"}],"closed":["frmSplash"],"waiting":null}
> {"click":"frmQuillon.mnuCompany1"}
< {"messages":[{"kind":"warning"}]}
> {"menu":"Companies > New Company"}
> {"set":"frmCompanyDatabase.editCompanyName","value":"Ours"}
> {"set":"frmCompanyDatabase.editDatabase","value":"{folder}/ours"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"messages":[{"kind":"warning"}],"waiting":{"modal":"frmCompanyDatabase"}}
> {"close":"frmCompanyDatabase"}
> {"state":"frmQuillon"}
< {"state":{"menus":["...",{"name":"mnuBackup","enabled":false},"..."]}}
> {"quit":true}
? settings/Quillon.ini ["...","Database={folder}/company","..."]
