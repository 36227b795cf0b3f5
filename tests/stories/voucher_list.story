# A clerk looks through the journal vouchers: order, filter, find, copy, delete.
@ --today 2026-03-05 --country Canada --date-format MM/dd/yyyy
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted, AutoReverse) VALUES (1, 2026, 1, 1001, 'GL', 'JV', '2026-01-31', 'Rent January', 500, true, false)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted, AutoReverse) VALUES (2, 2026, 2, 1002, 'GL', 'JV', '2026-02-28', 'RENT February', 1500.25, false, true)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted) VALUES (3, 2026, 2, 2001, 'AP', 'Chq', '2026-02-02', 'Payments', 70, true)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted) VALUES (4, 2026, 2, 2002, 'AP', 'Inv', '2026-02-03', 'Bills', 80, false)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted) VALUES (5, 2025, 12, 3001, 'AR', 'Inv', '2025-12-03', 'Sales', 90, true)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted) VALUES (6, 2025, 12, 3002, 'AR', 'Pmt', '2025-12-04', 'Receipts', 60, false)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted) VALUES (7, 2025, 11, 1003, 'IN', 'Adj', '2025-11-05', 'apples', 40, false)
| JVDet (JVID, Seq, GLAccountID, SubAccount1ID, GLAmount) VALUES (2, 3, 1, 1, 1500.25)
| JVDet (JVID, Seq, GLAccountID, SubAccount3ID, GLAmount) VALUES (2, 7, 1, 2, -1500.25)
| JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (4, 1, 1, 80)
> {"sql":"INSERT INTO {1}"}
|
> {"sql":"UPDATE JVCtl SET NextJVID = 8, NextJVNumber = 1004"}
> {"menu":"GL > JVs"}
> {"state":"frmJVs"}
< {"state":{"title":"Journal Vouchers","controls":{"grdJV":{"total":7,"active":{"row":0},"columns":[{"caption":"Period"},
   {"caption":"JV no."},{"caption":"Source"},{"caption":"Date"},{"caption":"Description"},{"caption":"Amount"}],
   "rows":[{"cells":{"GLPeriod":"2/26","JVNumber":"2002","Source":"AP Inv","TransDate":"03 Feb 26",
   "TransDescription":"Bills","JVAmount":"80.00"}},{"cells":{"Source":"AP Pmt"}},
   {"cells":{"Source":"GL JV","JVAmount":"1,500.25"}},"..."]}},
   "menus":[{"path":"&Edit > &New"},{"path":"&Edit > &Edit"},{"path":"&Edit > &Delete"},{"path":"&Edit > &Find..."},
   {"path":"&Edit > F&ilter..."},{"path":"&Edit > &Refresh"},{"path":"&JV > &Copy"},
   {"path":"&JV > &Post..."},{"path":"&JV > &Unpost Selected JV"},
   {"path":"&JV > &History","enabled":true},{"path":"&JV > Print &List...","enabled":true},
   {"path":"&JV > Print &Selected JV...","enabled":true},{"path":"&Sort by > Period &ascending"},
   {"path":"&Sort by > Period &descending","checked":true},{"path":"&Sort by > &JV no."},
   {"path":"&Sort by > D&escription"}]}}

| {"JVNumber":{}} | \"values\" takes texts, numbers, true, false and null
| {"JVNumber":"x"} | The field 'JVNumber': a whole number is needed
> {"grid":"frmJVs.grdJV","do":"locate","values":{1}}
< {"ok":false,"error":{"text":"{2}"}}
|

# Sorting keeps the row.
| mnuSortPeriod | 1003 | 3001 | 3002
| mnuSortJVNo | 1001 | 1002 | 1003
| mnuSortDescription | 1003 | 2002 | 2001
| mnuSortPeriodDESC | 2002 | 2001 | 1002
> {"click":"frmJVs.{1}"}
> {"state":"frmJVs","from":0}
< {"state":{"controls":{"grdJV":{"rows":[{"cells":{"JVNumber":"{2}"}},{"cells":{"JVNumber":"{3}"}},
   {"cells":{"JVNumber":"{4}"}},"..."]}}}}
|

# Filters; Reset and All take them off again.
| AP Invoices | All | 1 | Journal Vouchers (Filtered)
| AP Payments | All | 1 | Journal Vouchers (Filtered)
| AR Invoices | All | 1 | Journal Vouchers (Filtered)
| AR Payments | All | 1 | Journal Vouchers (Filtered)
| GL JVs | All | 2 | Journal Vouchers (Filtered)
| Inv Adjustments | All | 1 | Journal Vouchers (Filtered)
| All | Yes | 3 | Journal Vouchers (Filtered)
| All | No | 4 | Journal Vouchers (Filtered)
| GL JVs | Yes | 1 | Journal Vouchers (Filtered)
| AP Payments | No | 0 | Journal Vouchers (Filtered)
| All | All | 7 | Journal Vouchers
> {"click":"frmJVs.mnuFilter"}
> {"set":"frmJVsFilter.cboSource","value":"{1}"}
> {"set":"frmJVsFilter.radPosted","value":"{2}"}
> {"click":"frmJVsFilter.btnOK"}
< {"closed":["frmJVsFilter"]}
> {"state":"frmJVs"}
< {"state":{"title":"{4}","controls":{"grdJV":{"total":{3}}}}}
|
> {"click":"frmJVs.mnuFilter"}
> {"state":"frmJVsFilter"}
< {"state":{"title":"JVs Filter","controls":{"cboSource":{"value":"All","choices":["All","AP Invoices","AP Payments",
   "AR Invoices","AR Payments","GL JVs","Inv Adjustments"]},"radPosted":{"value":"All","choices":["Yes","No","All"]}}}}
> {"set":"frmJVsFilter.cboSource","value":"GL JVs"}
> {"click":"frmJVsFilter.btnOK"}
> {"click":"frmJVs.mnuFilter"}
> {"state":"frmJVsFilter"}
< {"state":{"controls":{"cboSource":{"value":"GL JVs"}}}}
> {"click":"frmJVsFilter.btnReset"}
> {"click":"frmJVsFilter.btnCancel"}
> {"state":"frmJVs"}
< {"state":{"title":"Journal Vouchers (Filtered)","controls":{"grdJV":{"total":2}}}}
> {"click":"frmJVs.mnuFilter"}
> {"click":"frmJVsFilter.btnReset"}
> {"click":"frmJVsFilter.btnOK"}
> {"state":"frmJVs"}
< {"state":{"title":"Journal Vouchers","controls":{"grdJV":{"total":7}}}}

# Finding by numbers.
> {"click":"frmJVs.mnuFind"}
< {"waiting":{"modal":"frmJVsFind"}}
> {"state":"frmJVsFind"}
< {"state":{"title":"Find Journal Voucher","controls":{"editGLPeriod":{"caption":"&Period:"},
   "editJVNumber":{"caption":"&JV no.:"},"editTransDescription":{"caption":"&Description:"}}}}
> {"set":"frmJVsFind.editJVNumber","value":"1003"}
> {"click":"frmJVsFind.btnOK"}
< {"closed":["frmJVsFind"]}
> {"state":"frmJVs"}
< {"state":{"controls":{"grdJV":{"active":{"row":6}}}}}
| 12 | 25 | 3001 | 5
| 12 | 25 |  | 4
|  |  | 2001 | 1
> {"key":"Ctrl+F"}
> {"set":"frmJVsFind.editGLPeriod","value":"{1}"}
> {"set":"frmJVsFind.editGLYear","value":"{2}"}
> {"set":"frmJVsFind.editJVNumber","value":"{3}"}
> {"key":"Enter"}
< {"closed":["frmJVsFind"]}
> {"state":"frmJVs"}
< {"state":{"controls":{"grdJV":{"active":{"row":{4}}}}}}
|
| 12 | 25 | 1003 | JV '1003' not found in period '12/25' | editJVNumber
| 3 | 26 |  | No JVs found in period '3/26' | editGLPeriod
|  |  | 77 | JV '77' not found | editJVNumber
> {"key":"Ctrl+F"}
> {"set":"frmJVsFind.editGLPeriod","value":"{1}"}
> {"set":"frmJVsFind.editGLYear","value":"{2}"}
> {"set":"frmJVsFind.editJVNumber","value":"{3}"}
> {"click":"frmJVsFind.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"{4}"}],"focus":"frmJVsFind.{5}","closed":[]}
> {"click":"frmJVsFind.btnCancel"}
> {"state":"frmJVs"}
< {"state":{"controls":{"grdJV":{"active":{"row":1}}}}}
|
> {"key":"Ctrl+F"}
| editGLPeriod | 13 | Period must be between 1 and 12
| editGLYear | 2026 | Period invalid...\rEnter year as 2 digits
> {"set":"frmJVsFind.{1}","value":"{2}"}
< {"ok":false,"messages":[{"text":"{3}"}]}
> {"key":"Esc"}
|
> {"set":"frmJVsFind.editGLPeriod","value":"2"}
> {"click":"frmJVsFind.btnOK"}
< {"ok":false,"messages":[{"text":"Period invalid...\rEnter period and year"}],"focus":"frmJVsFind.editGLYear"}
> {"set":"frmJVsFind.editGLPeriod","value":""}
> {"set":"frmJVsFind.editJVNumber","value":""}

# Finding by a part of the description: on from the current row at each repeat.
> {"set":"frmJVsFind.editTransDescription","value":"rent"}
> {"click":"frmJVsFind.btnOK"}
> {"state":"frmJVs"}
< {"state":{"controls":{"grdJV":{"active":{"row":2}}}}}
> {"key":"Ctrl+F"}
> {"key":"Enter"}
> {"state":"frmJVs"}
< {"state":{"controls":{"grdJV":{"active":{"row":3}}}}}
> {"key":"Ctrl+F"}
> {"key":"Enter"}
< {"ok":false,"messages":[{"kind":"error","text":"No more JVs with 'rent' in description found"}],
   "focus":"frmJVsFind.editTransDescription"}
> {"key":"Enter"}
< {"ok":true,"closed":["frmJVsFind"]}
> {"state":"frmJVs"}
< {"state":{"controls":{"grdJV":{"active":{"row":2}}}}}
> {"type":"frmJVs.grdJV","keys":"Z"}
< {"waiting":{"modal":"frmJVsFind"},"focus":"frmJVsFind.editTransDescription"}
> {"click":"frmJVsFind.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"No JVs with 'Z' in description found"}],
   "focus":"frmJVsFind.editTransDescription"}
> {"click":"frmJVsFind.btnCancel"}
> {"type":"frmJVs.grdJV","keys":"1"}
< {"focus":"frmJVsFind.editJVNumber"}
> {"set":"frmJVsFind.editJVNumber","value":"1002"}
> {"click":"frmJVsFind.btnOK"}

# Copying: the lines with their numbers, under a new number, today.
> {"click":"frmJVs.mnuCopy"}
< {"opened":["frmJV"]}
> {"state":"frmJV"}
< {"state":{"title":"New (copied) Journal Voucher","cursor":"insert","controls":{"editJVNumber":{"value":"1004"},
   "editGLPeriod":{"value":"3"},"editTransDate":{"data":"2026-03-05"},"editTransDescription":{"value":"RENT February"},
   "chkAutoReverse":{"value":"Yes"},"lblTotals":{"caption":"Debits: 1,500.25   Credits: 1,500.25CR"}}}}
> {"sql":"SELECT JVID, Seq, GLAccountID, SubAccount1ID, SubAccount3ID, GLAmount FROM JVDet WHERE JVID = 8"}
< {"rows":[[8,3,1,1,null,1500.25],[8,7,1,null,2,-1500.25]]}
> {"grid":"frmJV.grdJVDet","do":"append"}
> {"set":"frmJV.grdJVDet[2].GLAccount","value":"1000"}
> {"grid":"frmJV.grdJVDet","do":"up"}
> {"sql":"SELECT Seq, GLAmount FROM JVDet WHERE JVID = 8"}
< {"rows":[[3,1500.25],[7,-1500.25],[8,null]]}

# While a copy is being entered another is asked for: what is there is settled first.
> {"click":"frmJVs.mnuCopy"}
< {"waiting":{"dialog":{"text":"Do you want to save changes?"}}}
> {"answer":"Cancel"}
< {"ok":false,"opened":[],"finished":[{"command":"frmJVs.mnuCopy","aborted":true}]}
> {"click":"frmJVs.mnuCopy"}
> {"answer":"No"}
< {"closed":["frmJV"],"opened":["frmJV"]}
> {"sql":"SELECT DISTINCT JVID FROM JVDet"}
< {"rows":[[2],[4],[9]]}
> {"click":"frmJV.btnCancel"}
> {"sql":"SELECT DISTINCT JVID FROM JVDet"}
< {"rows":[[2],[4]]}
> {"click":"frmJVs.mnuCopy"}
> {"click":"frmJV.btnOK"}
< {"closed":["frmJV"],"focus":"frmJVs.grdJV[0].GLPeriod"}
> {"sql":"SELECT JVID, JVNumber, JVAmount, AutoReverse, Posted, TransDescription FROM JV WHERE JVID > 7"}
< {"rows":[[10,1006,1500.25,true,false,"RENT February"]]}
> {"sql":"SELECT JVAmount, AutoReverse FROM JV WHERE JVID = 2"}
< {"rows":[[1500.25,true]]}

# What is not copied and not deleted.
| 2001 | 3
| 1003 | 7
> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":{1}}}
> {"click":"frmJVs.mnuCopy"}
< {"ok":false,"messages":[{"kind":"error","text":"Unable to copy JV '{1}'...\rIts source is not GL"}],"opened":[]}
> {"click":"frmJVs.mnuDelete"}
< {"waiting":{"dialog":{"kind":"confirmation","buttons":["Yes","No"],"text":"Delete JV '{1}'?"}}}
> {"answer":"No"}
< {"ok":false,"messages":[],"finished":[{"aborted":true}]}
> {"click":"frmJVs.mnuDelete"}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"kind":"error","text":"Unable to delete JV '{1}'...\rIts source is not GL"}]}
|
> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1001}}
> {"click":"frmJVs.mnuDelete"}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"kind":"error","text":"Unable to delete JV '1001'...\rIt has already been posted.\r(Posted JVs can be unposted from the \"Edit\" screen)."}]}
> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1002}}
> {"click":"frmJVs.mnuDelete"}
> {"answer":"Yes"}
< {"ok":true,"messages":[]}
> {"sql":"SELECT JVID FROM JV WHERE JVID < 5"}
< {"rows":[[1],[3],[4]]}
> {"sql":"SELECT DISTINCT JVID FROM JVDet"}
< {"rows":[[4],[10]]}
> {"click":"frmJVs.mnuUnpost"}
< {"messages":[{"kind":"information","text":"Posted JVs (except those from prior years, but you can re-open the year) can be unposted\rfrom the “Edit” screen if they need to be edited or deleted."}]}

# Without a row there is nothing to do.
> {"sql":"DELETE FROM JV"}
> {"click":"frmJVs.mnuRefresh"}
| mnuEdit
| mnuDelete
| mnuCopy
> {"click":"frmJVs.{1}"}
< {"ok":false,"messages":[],"opened":[],"waiting":null}
|
