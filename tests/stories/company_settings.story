# "Your Company": every page, refusal and number, the logo, and the year that moves by hand only in empty books.
= logo.png ["\u0089PNG\r\n\u001a\n",["\u0000",90]]
= logo.jpg ["\u00ff\u00d8\u00ff\u00e0",["x",96]]
= logo.bmp ["BM",["x",98]]
= letter.png ["Dear Sirs"]
= empty.png [""]
= huge.bmp ["BM",["x",10000000]]
@ --today 2026-03-05 --country Canada
| Currency (CurrencyID, CurrencyName, APGLAccountID, APDiscGLAccountID, ARGLAccountID, ARDiscGLAccountID) VALUES (3, 'Dollar', 1, 1, 1, 1)
| PriceLst (PriceListID, PriceListName) VALUES (4, 'Retail')
| Tax (TaxID, TaxName, Rate, TaxCode, TaxDescription, TaxGLAccountID) VALUES (5, 'GST', 5, 'G', 'Goods', 1)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '4000', 'Sales', 3)
> {"sql":"INSERT INTO {1}"}
|
> {"menu":"General > Your Company"}
< {"opened":["frmCompany"],"focus":"frmCompany.editCompanyName"}
> {"state":"frmCompany"}
< {"state":{"title":"Your Company","cursor":"browse","default":"btnOK","controls":{
   "pagAll":{"pages":["General","Logo","AP Options","AR Options","Numbers","Email","Notes","Backup"]},
   "editCompanyName":{"caption":"Company Name:","value":"Acme"},"editFiscalYear":{"caption":"Fiscal Year:","value":"2026"},
   "editNextInvoiceNo":{"value":"1"},"cboDefaultCurrency":{"caption":"Default Currency:","choices":["","Dollar"]},"btnYearEnd":{"enabled":true},
   "editEmailPassword":{"value":""},"radBackupOnExit":{"caption":"Backup on Exit","value":"Never",
   "choices":["Always","Never","Ask"]},"chkWordWrap":{"data":true},"btnClear":{"enabled":false}}}}

# Years are typed with two digits and shown with four; each has its words.
| FiscalYear | Current Fiscal Year
| DefaultPeriodYYYY | Default Period
| WPeriodFromYYYY | Warn Before Period
| WPeriodToYYYY | Warn After Period
| EPeriodFromYYYY | Error Before Period
| EPeriodToYYYY | Error After Period
> {"set":"frmCompany.edit{1}","value":"2027"}
< {"ok":false,"messages":[{"kind":"error","text":"{2} invalid...\rEnter year as 2 digits"}],"focus":"frmCompany.edit{1}"}
> {"set":"frmCompany.edit{1}","value":"2x"}
< {"ok":false,"messages":[{"text":"{2} invalid...\rEnter year as 2 digits"}]}
> {"set":"frmCompany.edit{1}","value":"50"}
> {"set":"frmCompany.edit{1}","value":"49"}
> {"state":"frmCompany"}
< {"state":{"controls":{"edit{1}":{"value":"2049","data":2049}}}}
|
> {"set":"frmCompany.editDefaultPeriodPP","value":"13"}
< {"ok":false,"messages":[{"text":"Period must be between 1 and 12"}]}
> {"key":"Esc"}
> {"click":"frmCompany.btnCancel"}
< {"ok":true,"messages":[],"closed":["frmCompany"]}

# Everything is kept, and the main window shows the new name.
> {"menu":"General > Your Company"}
| editCompanyName | Acme & Sons
| editFiscalYear | 27
| editDefaultPeriodPP | 4
| editDefaultPeriodYYYY | 27
| cboDefaultCurrency | Dollar
| editAddressLine1 | 1 Pine St
| editPhone | 555
| editTaxNo | R100
| chkAPInvPONumbers | Yes
| editDfltSalesGLAccount | 4000
| cboDfltPriceList | Retail
| cboDfltTax1 | GST
| editEmailHost | mail.example
| editEmailPassword | Post
| memoNotes | Closed on Mondays
| chkWordWrap | No
| radBackupOnExit | Never
> {"set":"frmCompany.{1}","value":"{2}"}
< {"ok":true,"messages":[]}
|
> {"state":"frmCompany"}
< {"state":{"controls":{"lblDfltSalesGLAccount":{"caption":"Sales"},"editEmailPassword":{"value":"********"}}}}
> {"set":"frmCompany.editDfltCOGSGLAccount","value":"9"}
< {"ok":false,"messages":[{"kind":"error","text":"GL Account not found"}],"focus":"frmCompany.editDfltCOGSGLAccount"}
> {"key":"Esc"}
> {"click":"frmCompany.btnOK"}
< {"ok":true,"messages":[],"closed":["frmCompany"]}
> {"sql":"SELECT CompanyName, FiscalYear, DefaultPeriodPP, DefaultPeriodYYYY, DefaultCurrencyID, AddressLine1, Phone, TaxNo,
   APInvPONumbers, DfltSalesGLAccountID, DfltCOGSGLAccountID, DfltPriceListID, DfltTax1ID, EmailHost, EmailPassword, Notes,
   BackupOnExit, ApplicationVersion FROM Company"}
< {"rows":[["Acme & Sons",2027,4,2027,3,"1 Pine St","555","R100",true,1,null,4,5,"mail.example","Post",
   "Closed on Mondays",2,"2017.6"]]}
> {"state":"frmQuillon"}
< {"state":{"controls":{"lblCompanyName":{"caption":"Acme & Sons"}}}}

# Refusals, which leave the record in edit.
> {"menu":"General > Your Company"}
> {"set":"frmCompany.editCompanyName","value":"  "}
> {"set":"frmCompany.editFiscalYear","value":"88"}
> {"set":"frmCompany.editNextInvoiceNo","value":"0"}
> {"set":"frmCompany.editNextOrderNo","value":""}
> {"click":"frmCompany.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Next number cannot be zero"}],"focus":"frmCompany.editNextInvoiceNo"}
> {"set":"frmCompany.editNextInvoiceNo","value":"700"}
> {"click":"frmCompany.btnOK"}
< {"ok":false,"messages":[{"text":"Next number cannot be zero"}],"focus":"frmCompany.editNextOrderNo"}
> {"set":"frmCompany.editNextOrderNo","value":"-1"}
< {"ok":false}
> {"set":"frmCompany.editNextOrderNo","value":"800"}
> {"click":"frmCompany.btnOK"}
< {"ok":false,"messages":[{"text":"Field 'Company Name' must have a value"}],"focus":"frmCompany.editCompanyName"}
> {"set":"frmCompany.editCompanyName","value":"Acme"}
| 88
| 51
> {"set":"frmCompany.editFiscalYear","value":"{1}"}
< {"ok":true,"messages":[]}
> {"click":"frmCompany.btnOK"}
< {"ok":false,"messages":[{"text":"Fiscal Year must be between 1989 and 2050"}],"focus":"frmCompany.editFiscalYear"}
|
> {"sql":"SELECT NextInvoiceNo, NextOrderNo FROM ARInvCtl"}
< {"rows":[[0,0]]}
> {"set":"frmCompany.editFiscalYear","value":"26"}
> {"click":"frmCompany.btnOK"}
< {"ok":true,"closed":["frmCompany"]}
> {"sql":"SELECT NextInvoiceNo, NextOrderNo, NextInvoiceID FROM ARInvCtl"}
< {"rows":[[700,800,1]]}

# Numbers: only those that were typed are written, also when nothing else was, and a closing screen asks about them.
| editNextPurchaseOrderNo | 11
| editNextInvReceiptNo | 12
| editNextMfgOrderNo | 13
| editNextMfgReceiptNo | 14
> {"menu":"General > Your Company"}
> {"set":"frmCompany.{1}","value":"{2}"}
> {"sql":"UPDATE ARInvCtl SET NextInvoiceNo = 7{2}"}
> {"close":"frmCompany"}
< {"waiting":{"dialog":{"text":"Do you want to save changes?"}}}
> {"answer":"Yes"}
< {"ok":true,"closed":["frmCompany"]}
|
> {"sql":"SELECT NextPurchaseOrderNo, NextInvReceiptNo, NextMfgOrderNo, NextMfgReceiptNo FROM ItemCtl"}
< {"rows":[[11,12,13,14]]}
> {"sql":"SELECT NextInvoiceNo FROM ARInvCtl"}
< {"rows":[[714]]}
> {"menu":"General > Your Company"}
> {"set":"frmCompany.editNextMfgReceiptNo","value":"0"}
> {"close":"frmCompany"}
> {"answer":"Yes"}
< {"ok":false,"closed":[],"messages":[{"text":"Next number cannot be zero"}]}
> {"close":"frmCompany"}
> {"answer":"No"}
< {"ok":true,"closed":["frmCompany"]}

# The logo is a picture by its first bytes, and is saved with the rest.
> {"menu":"General > Your Company"}
> {"set":"frmCompany.pagAll","value":"Logo"}
| letter.png | It is not a picture. Choose a PNG, JPEG or BMP file.
| empty.png | It is not a picture. Choose a PNG, JPEG or BMP file.
| huge.bmp | It is too large: at most 10 MB fit.
| none.png | It cannot be read: No such file or directory.
| company | It is not a file.
> {"click":"frmCompany.btnLoad"}
< {"waiting":{"dialog":{"kind":"file","caption":"Load Logo"}}}
> {"answer":"{folder}/{1}"}
< {"ok":false,"messages":[{"kind":"error","text":"Unable to load picture '{folder}/{1}'...\r{2}"}]}
|
> {"click":"frmCompany.btnLoad"}
> {"answer":null}
< {"ok":false,"messages":[]}
> {"close":"frmCompany"}
< {"ok":true,"waiting":null}
| logo.png | 98
| logo.jpg | 100
| logo.bmp | 100
> {"menu":"General > Your Company"}
> {"click":"frmCompany.btnLoad"}
> {"answer":"{folder}/{1}"}
< {"ok":true,"messages":[]}
> {"state":"frmCompany"}
< {"state":{"controls":{"imgLogo":{"kind":"picture","data":{"bytes":{2}}},"btnClear":{"enabled":true}}}}
> {"click":"frmCompany.btnOK"}
> {"sql":"SELECT COUNT(*) FROM Logo WHERE NOT Logo IS NULL"}
< {"rows":[[1]]}
|
> {"menu":"General > Your Company"}
> {"click":"frmCompany.btnClear"}
> {"click":"frmCompany.btnCancel"}
> {"sql":"SELECT COUNT(*) FROM Logo WHERE NOT Logo IS NULL"}
< {"rows":[[1]]}
> {"menu":"General > Your Company"}
> {"click":"frmCompany.btnClear"}
> {"close":"frmCompany"}
> {"answer":"Yes"}
> {"sql":"SELECT COUNT(*) FROM Logo WHERE Logo IS NULL"}
< {"rows":[[1]]}

# Books that hold anything are not moved forward here; back they are.
| GLHist (GLHistID, GLAccountID, GLYear, GLPeriod, Source, JVNumber, TransDate, Amount) VALUES (1, 1, 2026, 1, 'GL', 1, '2026-01-05', 1) | GL History exists.
| ARInv (ARInvoiceID) VALUES (1) | AR Invoice(s) exist.
| APInv (APInvoiceID) VALUES (1) | AP Invoice(s) exist.
| JV (JVID, GLYear, GLPeriod, JVNumber) VALUES (1, 2026, 1, 1001) | Journal Voucher(s) exist.
> {"sql":"INSERT INTO {1}"}
> {"menu":"General > Your Company"}
> {"set":"frmCompany.editFiscalYear","value":"25"}
< {"ok":true,"messages":[]}
> {"set":"frmCompany.editFiscalYear","value":"26"}
< {"ok":true,"messages":[]}
> {"set":"frmCompany.editFiscalYear","value":"27"}
< {"ok":false,"messages":[{"kind":"error","text":"Fiscal Year cannot be changed forward by typing here...\r{2}\rPress Esc to undo.\rUse the Year-End button to move the year forward"}],"focus":"frmCompany.editFiscalYear"}
> {"key":"Esc"}
> {"click":"frmCompany.btnCancel"}
< {"ok":true,"closed":["frmCompany"]}
|

# The sample company moves as it likes.
> {"sql":"UPDATE Company SET CompanyName = 'Sample Data Ltd.'"}
@ --today 2026-03-05 --country Canada
> {"menu":"General > Your Company"}
> {"set":"frmCompany.editFiscalYear","value":"27"}
< {"ok":true,"messages":[]}
> {"click":"frmCompany.btnOK"}
< {"ok":true,"closed":["frmCompany"]}

# A control table that lost its row: its fields say why nothing can be typed; the rest can.
> {"sql":"DELETE FROM ItemCtl"}
> {"menu":"General > Your Company"}
> {"state":"frmCompany"}
< {"state":{"controls":{"editNextInvoiceNo":{"enabled":true},
   "editNextMfgOrderNo":{"enabled":false,"hint":"Table 'ItemCtl' has lost its row."}}}}
> {"set":"frmCompany.editDfltSalesGLAccount","value":""}
> {"key":"F2"}
< {"opened":["frmGLAccountSearch"],"waiting":{"modal":"frmGLAccountSearch"}}
> {"click":"frmGLAccountSearch.btnOK"}
> {"click":"frmCompany.btnOK"}
< {"ok":true,"messages":[],"closed":["frmCompany"]}
> {"sql":"SELECT DfltSalesGLAccountID FROM Company"}
< {"rows":[[1]]}
