# A clean machine: the welcome, the sample company, a company of one's own, and the way back to each.
@ none --today 2026-03-05
< {"ready":true,"ok":true,"messages":[],"closed":["frmSplash"],"waiting":{"modal":"frmWelcome"},"focus":"frmWelcome.radChoice"}
? settings/Quillon.ini ["[Companies]","Sample Data={folder}/settings/Public/Data"]
> {"state":"frmWelcome"}
< {"state":{"title":"Welcome to Quillon Enterprise Accounting","default":"btnOK","controls":{
   "lblMaker":{"caption":"Marrowfield Software"},"lblProduct":{"caption":"Quillon Enterprise Accounting with Manufacturing"},
   "lblVersion":{"caption":"Version 2017.6"},"radChoice":{"value":"Let's look at a sample company first",
   "choices":["Let's look at a sample company first","Set up my own company"]}}}}
> {"state":"frmQuillon"}
< {"state":{"controls":{"lblCompanyName":{"caption":""}},"menus":["...",{"name":"mnuJVs","enabled":false},"..."]}}
> {"key":"F1"}
< {"outside":["..."],"waiting":{"modal":"frmWelcome"}}

# One's own company has to wait for the sample.
> {"key":"Down"}
> {"key":"Enter"}
< {"messages":[{"kind":"information","text":"Please choose Sample Data before setting up your live data.\r\rYou can set up your own company next time or from the menu.\rThen you can switch between your live data and sample data for experimenting and learning."}],"waiting":{"modal":"frmWelcome"}}
> {"key":"Enter"}
< {"waiting":{"modal":"frmCompanyDatabase"},"focus":"frmCompanyDatabase.editDatabase"}
> {"state":"frmCompanyDatabase"}
< {"state":{"title":"Create Sample Data","controls":{"editCompanyName":{"value":"Sample Data","readOnly":true},
   "editDatabase":{"value":"{folder}/settings/Public/Data"}}}}
> {"set":"frmCompanyDatabase.editDatabase","value":null}
> {"key":"Enter"}
< {"ok":false,"messages":[{"text":"Database Folder must be entered"}]}
> {"close":"frmCompanyDatabase"}
< {"waiting":{"modal":"frmWelcome"}}
> {"click":"frmWelcome.btnOK"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":true,"messages":[],"closed":["frmCompanyDatabase","frmWelcome"],"waiting":null}
> {"state":"frmQuillon"}
< {"state":{"menus":["...",{"name":"mnuJVs","enabled":true},"..."]}}
> {"sql":"SELECT CompanyName FROM Company WHERE CompanyName >= 'Sample Data' AND CompanyName < 'Sample Datb'"}
< {"rows":[["..."]]}
> {"quit":true}
? settings/Quillon.ini ["...","Sample Data={folder}/settings/Public/Data","","[General]","Database={folder}/settings/Public/Data","..."]

# While there is no other company the welcome comes again; now the sample is there to be opened.
@ none --today 2026-03-05
< {"waiting":{"modal":"frmWelcome"}}
> {"click":"frmWelcome.btnOK"}
< {"messages":[],"closed":["frmWelcome"],"waiting":null}
> {"sql":"SELECT COUNT(*) N FROM Company"}
< {"rows":[[1]]}
> {"quit":true}

# Cancel at the welcome ends the program; what was open before is still known.
@ none --today 2026-03-05
> {"key":"Esc"}
< {"closed":["frmWelcome","frmQuillon"]}
? settings/Quillon.ini ["...","Database={folder}/settings/Public/Data","..."]

# A company of one's own: its folder is made, and the wizard asks for the rest, at each start until it is answered.
@ none --today 2026-03-05
> {"set":"frmWelcome.radChoice","value":"Set up my own company"}
> {"click":"frmWelcome.btnOK"}
< {"waiting":{"modal":"frmCompanyDatabase"}}
> {"click":"frmCompanyDatabase.btnCancel"}
< {"waiting":{"modal":"frmWelcome"}}
> {"click":"frmWelcome.btnOK"}
> {"set":"frmCompanyDatabase.editCompanyName","value":" Pine Street "}
> {"set":"frmCompanyDatabase.editDatabase","value":"{folder}/new/books/"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"ok":true,"messages":[],"waiting":{"modal":"frmGettingStarted"}}
? settings/Quillon.ini ["...","Pine Street={folder}/new/books","..."]
> {"close":"frmGettingStarted"}
< {"closed":["frmGettingStarted","frmCompanyDatabase","frmWelcome"],"waiting":null}
> {"state":"frmQuillon"}
< {"state":{"menus":["...",{"path":"&File > &Companies > Pine Street","visible":true},{"path":"&File > &Companies > Sample Data"},
   {"visible":false},"..."]}}
> {"quit":true}
@ none --today 2026-03-05
< {"waiting":{"modal":"frmGettingStarted"}}
> {"close":"frmGettingStarted"}
> {"click":"frmQuillon.mnuCompany2"}
< {"messages":[],"waiting":null}
> {"sql":"SELECT COUNT(*) N FROM Company"}
< {"rows":[[1]]}
> {"menu":"companies > pine street"}
< {"waiting":{"modal":"frmGettingStarted"}}
> {"close":"frmGettingStarted"}
> {"quit":true}

# The sample company again, after its folder was lost: the menu makes it anew, wherever it is wanted.
= settings/Quillon.ini ["[Companies]\nPine Street={folder}/new/books\nsample data={folder}/lost\n"]
@ none {folder}/new/books
> {"close":"frmGettingStarted"}
> {"click":"frmQuillon.mnuCompany2"}
< {"waiting":{"modal":"frmCompanyDatabase"}}
> {"set":"frmCompanyDatabase.editDatabase","value":"{folder}/lost"}
> {"click":"frmCompanyDatabase.btnOK"}
< {"messages":[],"waiting":null,"closed":["frmCompanyDatabase"]}
> {"quit":true}
? settings/Quillon.ini ["[Companies]","...","[General]","Database={folder}/lost","..."]

# A sample company whose making was broken off gets its rows when it is opened.
= settings/Quillon.ini ["[Companies]\nSample Data={folder}/company\n"]
@ none --today 2026-03-05
> {"click":"frmWelcome.btnOK"}
< {"messages":[],"closed":["frmWelcome"],"waiting":null}
> {"sql":"SELECT COUNT(*) N FROM Company"}
< {"rows":[[1]]}
> {"quit":true}
