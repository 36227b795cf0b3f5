# Two people at "Your Company", a company that was never entered, and one whose row was lost.
@ --today 2026-03-05 --country Canada
> {"open":"TfrmCompany"}
2> {"open":"TfrmCompany"}
> {"set":"frmCompany.editPhone","value":"1"}
2> {"set":"frmCompany.editPhone","value":"2"}
2< {"waiting":{"dialog":{"kind":"warning","buttons":["Yes","No"],"text":"The 'tblCompany' record you are trying to edit or delete is currently locked. Do you want to try again?\r\rThis would happen if the record (customer, invoice, etc.) is currently being edited by another person or process."}}}
2> {"answer":"No"}
2< {"ok":false,"messages":[]}
2> {"set":"frmCompany.editPhone","value":"2"}
> {"set":"frmCompany.editNextInvoiceNo","value":"50"}
> {"click":"frmCompany.btnOK"}
2> {"answer":"Yes"}
2< {"ok":false,"messages":[{"kind":"warning","text":"A record you are trying to edit or delete on 'tblCompany' has been changed or deleted since last retrieved.\rData will now be refreshed."}]}
2> {"state":"frmCompany"}
2< {"state":{"cursor":"browse","controls":{"editPhone":{"value":"1"},"editNextInvoiceNo":{"value":"50"}}}}
2> {"set":"frmCompany.editPhone","value":"2"}
2> {"click":"frmCompany.btnOK"}
2< {"ok":true,"closed":["frmCompany"]}

# The logo has a lock of its own.
> {"open":"TfrmCompany"}
2> {"open":"TfrmCompany"}
= logo.bmp ["BM"]
> {"click":"frmCompany.btnLoad"}
> {"answer":"{folder}/logo.bmp"}
2> {"click":"frmCompany.btnLoad"}
2> {"answer":"{folder}/logo.bmp"}
2< {"waiting":{"dialog":{"kind":"warning"}}}
2> {"answer":"No"}
2< {"ok":false,"messages":[]}
2> {"close":"frmCompany"}
2< {"ok":true,"waiting":null}
> {"close":"frmCompany"}
> {"answer":"No"}

# Without a row a new one begins. Of two who enter it at once the second is told.
> {"sql":"DELETE FROM Company"}
> {"open":"TfrmCompany"}
2> {"open":"TfrmCompany"}
> {"state":"frmCompany"}
< {"state":{"cursor":"insert","controls":{"editCompanyName":{"value":""},"editNextInvoiceNo":{"value":"50"},
   "editNextOrderNo":{"value":"1"},"radBackupOnExit":{"data":null}}}}
> {"set":"frmCompany.editCompanyName","value":"Acme"}
> {"set":"frmCompany.editFiscalYear","value":"26"}
2> {"state":"frmCompany"}
2< {"state":{"cursor":"insert","controls":{"editCompanyName":{"value":""},"editNextInvoiceNo":{"value":"50"},
   "editNextOrderNo":{"value":"1"},"radBackupOnExit":{"data":null}}}}
2> {"set":"frmCompany.editCompanyName","value":"Other"}
2> {"set":"frmCompany.editFiscalYear","value":"26"}
> {"click":"frmCompany.btnOK"}
< {"ok":true,"messages":[],"closed":["frmCompany"]}
2> {"click":"frmCompany.btnOK"}
2< {"ok":false,"messages":[{"kind":"error","text":"Your Company has been entered by another user meanwhile"}]}
2> {"click":"frmCompany.btnCancel"}
2< {"ok":true,"closed":["frmCompany"]}
> {"sql":"SELECT CompanyNo, CompanyName, FiscalYear, ARInvoiceStyle, ARInvoiceCopies, BackupOnExit, ApplicationVersion FROM Company"}
< {"rows":[[1,"Acme",2026,1,1,null,"2017.6"]]}

# Where the row is lost with its file, one in its place waits to be entered anew.
= company/Company.DAT [["\u0000",32768]]
@ --today 2026-03-05 --country Canada
< {"ok":true,"messages":[{"kind":"warning"}],"opened":["frmCompany"]}
> {"state":"frmCompany"}
< {"state":{"cursor":"browse","controls":{"editCompanyName":{"value":"Data lost: please re-enter"},
   "editFiscalYear":{"value":"1990"}}}}
> {"set":"frmCompany.editCompanyName","value":"Acme"}
> {"set":"frmCompany.editFiscalYear","value":"26"}
> {"click":"frmCompany.btnOK"}
< {"ok":true,"messages":[],"closed":["frmCompany"]}
> {"state":"frmQuillon"}
< {"state":{"controls":{"lblCompanyName":{"caption":"Acme"}}}}
