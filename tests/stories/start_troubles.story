# What can stand in the way of a start: each time it is told, and the program can be used and ended.
= settings/Quillon.ini ["[Companies]\nAcme={folder}/company\n[General]\nDatabase=/nowhere/books\n"]
@ none
< {"messages":[{"kind":"stop","caption":"Quillon Enterprise Accounting",
   "text":"Error opening database '/nowhere/books'...\rThe specified directory does not exist."}],"waiting":null,"closed":["frmSplash"]}
> {"state":"frmQuillon"}
< {"state":{"controls":{"lblCompanyName":{"caption":""}},"menus":["...",{"name":"mnuJVs","enabled":false},"...",
   {"name":"mnuNewCompany","enabled":true},"...",{"name":"mnuCompany1","enabled":true},"...",{"name":"mnuAbout","enabled":true}]}}
> {"sql":"SELECT 1 A FROM Company"}
< {"ok":false,"error":{"text":"No company is open"}}
> {"click":"frmQuillon.mnuAbout"}
< {"waiting":{"modal":"frmAbout"}}
> {"key":"F1"}
< {"outside":["..."]}
> {"key":"Enter"}
> {"quit":true}
? settings/Quillon.ini ["...","Database=/nowhere/books","System=Sales Orders"]
@ none {folder}/settings
< {"messages":[{"kind":"stop","text":"Error opening database '{folder}/settings'...\rThe specified directory does not contain a database."}]}
> {"click":"frmQuillon.mnuCompany1"}
< {"messages":[]}
> {"state":"frmQuillon"}
< {"state":{"controls":{"lblCompanyName":{"caption":"Acme"}}}}

# A company of another version stays as it is.
> {"sql":"UPDATE Company SET ApplicationVersion = '2016.1'"}
> {"quit":true}
? settings/Quillon.ini ["...","Database={folder}/company","..."]
@ none
< {"messages":[{"kind":"stop","caption":"Quillon Enterprise Accounting","text":"Database '{folder}/company' was created by a different version...\r\rProgram: 2017.6  Database: 2016.1\r\rData entered to a previous version must be imported so as to be compatible with the new version.\rPlease see readme.txt for instructions."}],"waiting":null}
> {"sql":"SELECT 1 A FROM Company"}
< {"ok":false,"error":{"text":"No company is open"}}
> {"quit":true}

# A file that is no settings at all, but for a line or two.
= settings/Quillon.ini ["\u00fe\u00ff\u0000[General\n]]]\n[General]\nToolbarText=maybe\nSystem=\u0000Nonsense\nDatabase\n=\n\"\n[Companies]\n==\nX=\n& Y=/y\n"]
@ none
< {"messages":[],"waiting":{"modal":"frmWelcome"}}
> {"state":"frmQuillon"}
< {"state":{"controls":{"cboSystem":{"value":"Sales Orders"}},"menus":["...",{"name":"mnuOrganizeCompanies"},
   {"path":"&File > &Companies > & Y"},{"path":"&File > &Companies > Sample Data"},{"path":"&File > &Companies > X"},"...",
   {"name":"mnuToolbarText","checked":true},"..."]}}
> {"close":"frmWelcome"}
< {"closed":["frmWelcome","frmQuillon"]}
