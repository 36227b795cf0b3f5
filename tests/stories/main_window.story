# The program comes up on a company, tells what it has, refuses what is not there, and ends.
@ --today 2026-03-05 --country Canada --date-format dd.MM.yyyy
< {"ready":true,"ok":true,"messages":[],"closed":["frmSplash"],"waiting":null,"finished":[{"ok":true}]}
> {"screens":true}
< {"screens":[{"name":"frmQuillon","class":"TfrmQuillon","active":true,"modal":false}]}
> {"state":"frmquillon"}
< {"state":{"title":"Quillon Enterprise Accounting with Manufacturing","cursor":null,
   "controls":{"lblCompanyName":{"kind":"label","visible":true}}}}

# Menus: a path may leave out its beginning, its marks and dots; it has to stay clear.
> {"menu":"Nonsense"}
< {"ok":false,"error":{"text":"There is no menu entry 'Nonsense'"}}
> {"menu":"Reports"}
< {"ok":false,"error":{"text":"The menu entry 'Reports' is ambiguous","exists":["File > AP > Reports","..."]}}
> {"menu":"general > purge old data"}
< {"ok":false,"finished":[{"command":"frmQuillon.mnuPurge","ok":false}]}
> {"menu":"&File > G&eneral > B&ackup > &Options..."}
< {"waiting":{"modal":"frmBackupOptions"}}
> {"close":"frmBackupOptions"}
< {"finished":[{"command":"frmBackupOptions"},{"command":"frmQuillon.mnuBackupOptions"}]}

# Screens that this version does not have.
> {"open":"TfrmPurge"}
< {"ok":false,"messages":[{"kind":"error","caption":"Quillon Enterprise Accounting",
   "text":"This version does not have the screen 'TfrmPurge' yet"}],
   "finished":[{"command":"TfrmPurge","ok":false,
   "error":{"text":"This version does not have the screen 'TfrmPurge' yet","code":null}}]}
> {"click":"frmQuillon.mnuPurge"}
< {"ok":false,"finished":[{"command":"frmQuillon.mnuPurge"}]}
> {"open":"TfrmNonsense"}
< {"ok":false,"error":{"text":"There is no screen 'TfrmNonsense'"},"messages":[]}

# What is no request is told, and the next one is served.
> nonsense
< {"ok":false,"error":{"text":"This is no JSON; it goes wrong at byte 2"}}
>  
< {"ok":false}
> []
< {"ok":false,"error":{"text":"A request is a JSON object"}}
> {"dance":true}
< {"ok":false,"error":{"exists":["open","..."]}}
> {"open":"TfrmJVs","click":"frmJVs.mnuNew"}
< {"ok":false,"error":{"text":"\"open\" and \"click\" are two requests"}}
> {"open":"TfrmJVs","open":"TfrmJVs"}
< {"ok":false,"error":{"text":"\"open\" stands there twice"}}
> {"open":7}
< {"ok":false,"error":{"text":"\"open\" takes a text"}}
> {"click":"frmJVs.mnuNew"}
< {"ok":false,"error":{"text":"No screen 'frmJVs' is open","exists":["frmQuillon"]}}
> {"set":"frmQuillon.lblCompanyName","value":"x"}
< {"ok":false,"error":{"text":"Nothing can be typed into 'frmQuillon.lblCompanyName'"}}
> {"type":"frmQuillon.lblCompanyName","keys":"x"}
< {"ok":false,"error":{"text":"'frmQuillon.lblCompanyName' takes no focus"}}
> {"state":"frmQuillon","from":-1}
< {"ok":false}
> {"key":"Ctrl+F"}
< {"ok":false}
> {"key":"Esc"}
< {"ok":false,"closed":[],"error":{"text":"The key 'Esc' does nothing here"}}
> {"answer":"Yes"}
< {"ok":false,"error":{"text":"Nothing waits for an answer"}}

# Statements.
> {"sql":"CREATE TABLE T (ID AutoInc PRIMARY KEY, Name VARCHAR(9), Amt Money, D Date, Ok Boolean)"}
> {"sql":"INSERT INTO T (Name, Amt, D, Ok) VALUES ('a', 12.50, '2026-01-02', true)"}
< {"changed":1,"rows":[]}
> {"sql":"SELECT * FROM T"}
< {"columns":["ID","Name","Amt","D","Ok"],"rows":[[1,"a",12.5,"2026-01-02",true]]}
> {"sql":"SELECT X FROM Company"}
< {"ok":false,"error":{"code":9002}}

> {"options":{"progress":true}}
> {"options":{"colour":true}}
< {"ok":false}
> {"quit":false}
< {"ok":false}
> {"screens":7}
< {"ok":false,"error":{"text":"\"screens\" takes true or false"}}
> {"quit":true}
< {"ok":true,"waiting":null,"closed":["..."]}
