# Several companies: the menu, the choice among many, what keeps one from being opened, the list of them.
= settings/Quillon.ini ["; the office's companies\n[Companies]\nPine = /nowhere/pine\nAcme={folder}/company\n[Other]\nx=1\n"]
@ --today 2026-03-05
? settings/Quillon.ini ["; the office's companies","[Companies]","Pine = /nowhere/pine","Acme={folder}/company",
   "Sample Data={folder}/settings/Public/Data","[Other]","x=1"]
> {"state":"frmQuillon"}
< {"state":{"controls":{"lblCompanyName":{"caption":"Acme"}},
   "menus":["...",{"name":"mnuNewCompany"},{"name":"mnuOrganizeCompanies"},
   {"name":"mnuCompany1","path":"&File > &Companies > Acme","visible":true,"enabled":true},
   {"name":"mnuCompany2","path":"&File > &Companies > Pine","visible":true},
   {"name":"mnuCompany3","path":"&File > &Companies > Sample Data","visible":true},
   {"name":"mnuCompany4","visible":false},{"name":"mnuCompany5","visible":false},
   {"name":"mnuMoreCompanies","visible":false},{"name":"mnuExit"},"..."]}}

# A folder that is not there: the company that is open stays, but nothing is offered until one is opened.
> {"menu":"Companies > Pine"}
< {"messages":[{"kind":"stop","caption":"Quillon Enterprise Accounting",
   "text":"Error opening company 'Pine', database '/nowhere/pine'...\rThe specified directory does not exist."}]}
> {"state":"frmQuillon"}
< {"state":{"controls":{"lblCompanyName":{"caption":"Acme"}},
   "menus":["...",{"name":"mnuJVs","enabled":false},"...",{"name":"mnuCompany1","enabled":true},"...",
   {"name":"mnuExit","enabled":true},{"name":"mnuViewCompanyName","enabled":true},"..."]}}
> {"click":"frmQuillon.mnuCompany1"}
< {"messages":[],"waiting":null}
> {"state":"frmQuillon"}
< {"state":{"menus":["...",{"name":"mnuJVs","enabled":true},"..."]}}

# A screen that refuses to close keeps the old company open.
> {"menu":"GL > JVs"}
> {"click":"frmJVs.mnuNew"}
> {"set":"frmJV.editTransDescription","value":"Rent"}
> {"click":"frmQuillon.mnuCompany1"}
< {"waiting":{"dialog":{"text":"Do you want to save changes?"}}}
> {"answer":"Cancel"}
< {"ok":false,"messages":[{"kind":"error","caption":"Quillon Enterprise Accounting",
   "text":"All forms must be closed before changing to another company"}],"waiting":null}
> {"state":"frmJV"}
< {"state":{"controls":{"editTransDescription":{"value":"Rent"}}}}
> {"quit":true}
< {"waiting":{"dialog":{"text":"Do you want to save changes?"}}}
> {"answer":"Cancel"}
< {"ok":false,"messages":[{"text":"All unsaved changes must be resolved before closing Quillon"}]}
> {"click":"frmQuillon.mnuCompany1"}
> {"answer":"No"}
< {"closed":["frmJV"],"messages":[]}

# The list: what may be typed, in the order in which it is told.
> {"menu":"Companies > New Company"}
< {"waiting":{"modal":"frmCompanyDatabase"},"focus":"frmCompanyDatabase.editCompanyName"}
> {"state":"frmCompanyDatabase"}
< {"state":{"title":"Add New Company","default":"btnOK","controls":{"editCompanyName":{"readOnly":false,"value":""}}}}
> {"set":"frmCompanyDatabase.editDatabase","value":"/x"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Company Name must be entered"}],"focus":"frmCompanyDatabase.editCompanyName"}
> {"set":"frmCompanyDatabase.editCompanyName","value":"Smith & Sons"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":false,"messages":[{"text":"Company Name must not contain character '&'."}],"focus":"frmCompanyDatabase.editCompanyName"}
> {"set":"frmCompanyDatabase.editCompanyName","value":"sample data"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":false,"messages":[{"text":"Company Name 'Sample Data' is reserved for system generated sample data"}],
   "focus":"frmCompanyDatabase.editCompanyName"}
> {"set":"frmCompanyDatabase.editCompanyName","value":"a name of no more than forty characters!!"}
< {"ok":false}
> {"set":"frmCompanyDatabase.editCompanyName","value":"acme"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":false,"messages":[{"text":"Database Folder invalid"}],"focus":"frmCompanyDatabase.editDatabase"}
> {"set":"frmCompanyDatabase.editDatabase","value":null}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":false,"messages":[{"text":"Database Folder must be entered"}],"focus":"frmCompanyDatabase.editDatabase"}
> {"set":"frmCompanyDatabase.editDatabase","value":"{folder}/settings/Quillon.ini/ours"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":false,"messages":[{"text":"Could not create folder {folder}/settings/Quillon.ini"}],"focus":"frmCompanyDatabase.editDatabase"}
> {"click":"frmCompanyDatabase.btnBrowse"}
< {"waiting":{"dialog":{"kind":"folder"}}}
> {"answer":"{folder}/ours/books/"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":false,"messages":[{"text":"Company Name 'acme' already exists"}],"focus":"frmCompanyDatabase.editCompanyName"}

# A folder with a database is joined, as by the second workstation of a company.
> {"set":"frmCompanyDatabase.editCompanyName","value":"Acme too"}
> {"set":"frmCompanyDatabase.editDatabase","value":"{folder}/company/"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"waiting":{"dialog":{"kind":"confirmation","buttons":["Yes","No"],"text":"The specified folder already contains a database. Create a company shortcut to it?\r\rThis would be expected if setting up multiple workstations to access a shared database on a network."}}}
> {"answer":"No"}
< {"ok":false,"waiting":{"modal":"frmCompanyDatabase"},"messages":[]}
> {"click":"frmCompanyDatabase.btnOK"}
> {"answer":"Yes"}
< {"ok":true,"closed":["frmCompanyDatabase"],"waiting":null}
? settings/Quillon.ini ["...","Acme too={folder}/company","..."]

# Both fields empty: Cancel.
> {"menu":"Companies > New Company"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":true,"closed":["frmCompanyDatabase"],"messages":[]}

# Editing: the folder must be a company's; the name may change, but no other entry is lost.
> {"menu":"Companies > Organize Companies"}
> {"state":"frmOrganizeCompanies"}
< {"state":{"title":"Organize Companies","controls":{"lstCompanies":{"value":"Acme","choices":["Acme","Acme too","Pine","Sample Data"]},
   "lblFolder":{"caption":"Folder: {folder}/company"}}}}
> {"set":"frmOrganizeCompanies.lstCompanies","value":"Pine"}
> {"click":"frmOrganizeCompanies.btnEdit"}
> {"state":"frmCompanyDatabase"}
< {"state":{"title":"Edit Company","controls":{"editCompanyName":{"value":"Pine","readOnly":false},"editDatabase":{"value":"/nowhere/pine"}}}}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":false,"focus":"frmCompanyDatabase.editDatabase","messages":[{"kind":"error","text":"The specified folder does not exist. The folder must exist and contain an existing database.\r\rThis option will not move or create a database, but it can be used to update a company shortcut after a database has been moved."}]}
> {"set":"frmCompanyDatabase.editDatabase","value":"{folder}/ours/books"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":false,"focus":"frmCompanyDatabase.editDatabase","messages":[{"text":"The specified folder does not contain an existing database.\r\rThis option will not move or create a database, but it can be used to update a company shortcut after a database has been moved."}]}
> {"set":"frmCompanyDatabase.editDatabase","value":"{folder}/company"}
> {"set":"frmCompanyDatabase.editCompanyName","value":"ACME"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":false,"messages":[{"text":"Company Name 'ACME' already exists"}]}
> {"set":"frmCompanyDatabase.editCompanyName","value":"Pine Street; = Books"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":true,"waiting":{"modal":"frmOrganizeCompanies"}}
> {"state":"frmOrganizeCompanies"}
< {"state":{"controls":{"lstCompanies":{"value":"Pine Street; = Books","choices":["Acme","Acme too","Pine Street; = Books","Sample Data"]}}}}

# The sample company keeps its name and its entry.
> {"set":"frmOrganizeCompanies.lstCompanies","value":"Sample Data"}
> {"click":"frmOrganizeCompanies.btnRemove"}
< {"ok":false,"error":{"text":"'frmOrganizeCompanies.btnRemove' is disabled"}}
> {"click":"frmOrganizeCompanies.btnEdit"}
> {"set":"frmCompanyDatabase.editCompanyName","value":"Mine"}
< {"ok":false,"messages":[{"kind":"information","text":"The sample company keeps its name."}]}
> {"close":"frmCompanyDatabase"}

# Removing takes the entry away and nothing else.
> {"set":"frmOrganizeCompanies.lstCompanies","value":"Acme too"}
> {"click":"frmOrganizeCompanies.btnRemove"}
< {"waiting":{"dialog":{"default":"No","text":"Remove 'Acme too' from the list of companies?\r\rIts data in folder '{folder}/company' is not deleted."}}}
> {"answer":"No"}
> {"click":"frmOrganizeCompanies.btnRemove"}
> {"answer":"Yes"}
> {"click":"frmOrganizeCompanies.btnClose"}
< {"closed":["frmOrganizeCompanies"]}
? settings/Quillon.ini ["; the office's companies","[Companies]","Acme={folder}/company",
   "Sample Data={folder}/settings/Public/Data","\"Pine Street; = Books\"={folder}/company","[Other]","x=1"]

# Five names, and with a sixth the way to the others.
> {"quit":true}
= settings/Quillon.ini ["[Companies]\nBooks={folder}/company\nAcme={folder}/company\nJVs=/e\nDan=/d\nSample Data=/s\n=/no name\n"]
@ --today 2026-03-05
> {"state":"frmQuillon"}
< {"state":{"menus":["...",{"name":"mnuCompany4","path":"&File > &Companies > JVs"},
   {"name":"mnuCompany5","path":"&File > &Companies > Sample Data","visible":true},{"name":"mnuMoreCompanies","visible":false},"..."]}}
> {"menu":"JVs"}
< {"opened":["frmJVs"]}
> {"menu":"Companies > JVs"}
< {"closed":[],"messages":[{"text":"Error opening company 'JVs', database '/e'...\rThe specified directory does not exist."}]}
> {"quit":true}
= settings/Quillon.ini ["[Companies]\nBooks={folder}/company\nacme={folder}/company\nEve=/e\nDan=/d\nSample Data=/s\nFern=/f\n"]
@ --today 2026-03-05
> {"state":"frmQuillon"}
< {"state":{"menus":["...",{"path":"&File > &Companies > acme"},{"path":"&File > &Companies > Books"},{"path":"&File > &Companies > Dan"},
   {"path":"&File > &Companies > Eve"},{"path":"&File > &Companies > Fern"},
   {"name":"mnuMoreCompanies","path":"&File > &Companies > &More...","visible":true},"..."]}}
> {"menu":"More..."}
< {"waiting":{"modal":"frmSelectCompany"},"focus":"frmSelectCompany.editSearch"}
> {"state":"frmSelectCompany"}
< {"state":{"title":"Select Company","default":"btnOK","controls":{"lstCompanies":{"value":"acme",
   "choices":["acme","Books","Dan","Eve","Fern","Sample Data"]}}}}
> {"type":"frmSelectCompany.editSearch","keys":"da"}
> {"state":"frmSelectCompany"}
< {"state":{"typed":"da","controls":{"lstCompanies":{"value":"Dan"}}}}
> {"key":"Down"}
> {"key":"Down"}
> {"key":"Up"}
< {"focus":"frmSelectCompany.editSearch"}
> {"state":"frmSelectCompany"}
< {"state":{"typed":"da","controls":{"lstCompanies":{"value":"Eve"}}}}
> {"type":"frmSelectCompany.editSearch","keys":"x"}
> {"key":"Enter"}
< {"ok":false,"messages":[{"kind":"error","text":"No company selected"}],"waiting":{"modal":"frmSelectCompany"}}
> {"set":"frmSelectCompany.editSearch","value":"Fe"}
> {"click":"frmSelectCompany.btnOK"}
< {"closed":["frmSelectCompany"],"messages":[{"kind":"stop",
   "text":"Error opening company 'Fern', database '/f'...\rThe specified directory does not exist."}],"waiting":null}
> {"click":"frmQuillon.mnuMoreCompanies"}
> {"set":"frmSelectCompany.lstCompanies","value":"Books"}
> {"click":"frmSelectCompany.lstCompanies"}
< {"closed":["frmSelectCompany"],"messages":[]}
> {"state":"frmQuillon"}
< {"state":{"controls":{"lblCompanyName":{"caption":"Acme"}},"menus":["...",{"name":"mnuJVs","enabled":true},"..."]}}

# The View menu writes its keys at once; closing asks when it is told to, and writes what was open.
> {"menu":"View > Confirm Exit"}
> {"menu":"View > Company Name"}
> {"state":"frmQuillon"}
< {"state":{"controls":{"lblCompanyName":{"visible":false}},"menus":["...",{"name":"mnuViewCompanyName","checked":false},
   {"name":"mnuToolbarText","checked":true},{"name":"mnuViewConfirmExit","checked":true},"..."]}}
? settings/Quillon.ini ["...","[General]","ViewConfirmExit=1","ViewCompanyName=0"]
> {"menu":"General > Settings"}
< {"waiting":{"dialog":{"kind":"warning","default":"No","buttons":["Yes","No"],
   "text":"Location of settings is:\r{folder}/settings/Quillon.ini\r\rChanging settings can cause problems.\rDo you want to proceed?"}}}
> {"answer":"Yes"}
< {"outside":["{folder}/settings/Quillon.ini"]}
> {"set":"frmQuillon.cboSystem","value":"GL"}
> {"quit":true}
< {"waiting":{"dialog":{"kind":"confirmation","buttons":["Yes","No"],"text":"Close application?"}}}
> {"answer":"No"}
< {"ok":false}
> {"quit":true}
> {"answer":"Yes"}
< {"ok":true}
? settings/Quillon.ini ["...","[General]","ViewConfirmExit=1","ViewCompanyName=0","Database={folder}/company","System=GL"]
