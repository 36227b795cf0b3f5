# Settings that cannot be saved: told each time, and nothing else is stopped by it.
= settings/Quillon.ini ["[Companies]\nAcme={folder}/company\n"]
= settings/Quillon.ini.lock/stands ["in the way"]
@ none {folder}/company
< {"messages":[{"kind":"warning","text":"Could not save the settings in '{folder}/settings/Quillon.ini': Is a directory"},"..."]}
> {"menu":"View > Confirm Exit"}
< {"ok":true,"messages":[{"kind":"warning"}]}
> {"menu":"View > Confirm Exit"}
> {"menu":"Companies > Organize Companies"}
> {"click":"frmOrganizeCompanies.btnRemove"}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"kind":"error"}]}
> {"state":"frmOrganizeCompanies"}
< {"state":{"controls":{"lstCompanies":{"value":"Acme"}}}}
> {"click":"frmOrganizeCompanies.btnClose"}
> {"quit":true}
< {"ok":true,"messages":[{"kind":"warning"}]}
? settings/Quillon.ini ["[Companies]","Acme={folder}/company"]
