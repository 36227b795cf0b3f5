# A clerk prints lists: the preview and its pages, a search in them, paper, files, and the figures that lead to vouchers.
#
# Not reached by any story: a preview that is used while pages are still laid out, and the name offered for a report
# whose title no file may have (tests/reports has both); a full disk (tests/reports).
= settings/Quillon.ini ["[Companies]\nAcme={folder}/company\n"]
@ --today 2026-03-05 --country Canada --printer letter --print-to {folder}/jobs
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted) VALUES (1, 2026, 3, 1001, 'GL', 'JV', '2026-03-01', 'Rent', 500, true)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted) VALUES (2, 2026, 2, 1002, 'GL', 'JV', '2026-02-02', 'Bought', 1500.25, false)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted) VALUES (3, 2026, 1, 1003, 'GL', 'JV', '2026-01-02', 'Taken', 7, true)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID) VALUES (1, 2026, 3, 'GL', 'JV', 1001, '2026-03-01', 10, 'Łódź', 1)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID) VALUES (1, 2026, 4, 'GL', 'JVR', 1001, '2026-03-01', -10, 'Reversed', 1)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription) VALUES (1, 2026, 3, 'GL', 'JV', 1004, '2026-03-02', 3, 'Purged')
> {"sql":"INSERT INTO {1}"}
|
| 1
| 2
| 4
| 8
| 16
| 32
| 64
> {"sql":"INSERT INTO GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, JVID) SELECT 1, 2026, 3, 'GL', 'JV', 1001, '2026-03-01', 1, 1 FROM GLHist WHERE Amount > 0 AND Amount < 5"}
< {"changed":{1}}
|

# Turning pages.
> {"menu":"GL > History"}
> {"click":"frmGLHistory.mnuPrint"}
< {"ok":true,"opened":["frmPreview"],"messages":[],"waiting":null}
> {"state":"frmPreview"}
< {"state":{"title":"Quillon Enterprise Accounting Reports","modal":false,"controls":{"btnFirst":{"enabled":false},
   "btnPrev":{"enabled":false},"btnNext":{"enabled":true},"btnLast":{"enabled":true},
   "panelPageNumber":{"caption":"Page 1 of 3"},"cboZoom":{"value":"100%"},
   "pgvPages":{"title":"GL History","count":3,"page":1,"zoom":100,"found":""}}}}
| {"click":"frmPreview.btnNext"} | 2 | true | true
| {"click":"frmPreview.btnPrev"} | 1 | false | true
| {"click":"frmPreview.btnLast"} | 3 | true | false
| {"click":"frmPreview.btnFirst"} | 1 | false | true
| {"key":"PgDn"} | 2 | true | true
| {"key":"PgDn"} | 3 | true | false
| {"key":"PgUp"} | 2 | true | true
| {"key":"Ctrl+Home"} | 1 | false | true
| {"key":"Ctrl+End"} | 3 | true | false
> {1}
> {"state":"frmPreview"}
< {"state":{"controls":{"btnFirst":{"enabled":{3}},"btnPrev":{"enabled":{3}},"btnNext":{"enabled":{4}},
   "btnLast":{"enabled":{4}},"panelPageNumber":{"caption":"Page {2} of 3"},"pgvPages":{"page":{2}}}}}
|
| btnNext
| btnLast
> {"click":"frmPreview.{1}"}
< {"ok":false,"error":{"text":"'frmPreview.{1}' is disabled"}}
|
> {"state":"frmPreview","page":4}
< {"ok":false,"error":{"text":"There is no page 4; it has 3"}}

# Zoom, in steps, between its limits.
| {"click":"frmPreview.btnZoomIn"} | 110
| {"key":"Ctrl+-"} | 100
| {"set":"frmPreview.cboZoom","value":"30%"} | 30
| {"click":"frmPreview.btnZoomOut"} | 20
| {"click":"frmPreview.btnZoomOut"} | 20
| {"set":"frmPreview.cboZoom","value":"190%"} | 190
| {"key":"Ctrl++"} | 200
| {"key":"Ctrl++"} | 200
> {1}
> {"state":"frmPreview"}
< {"state":{"controls":{"cboZoom":{"value":"{2}%"},"pgvPages":{"zoom":{2}}}}}
|

# Searching: from the page on view, in any case, and around.
> {"click":"frmPreview.btnFind"}
< {"ok":false,"messages":[{"kind":"error","text":"Search text must be entered"}],"focus":"frmPreview.editSearch"}
| łódź | 3
| REVERSED | 1
> {"set":"frmPreview.editSearch","value":"{1}"}
> {"key":"F3"}
> {"state":"frmPreview"}
< {"state":{"controls":{"pgvPages":{"page":{2},"found":"{1}"}}}}
|
> {"set":"frmPreview.editSearch","value":"Page "}
| 1
| 2
| 3
| 1
> {"key":"F3"}
> {"state":"frmPreview"}
< {"state":{"controls":{"pgvPages":{"page":{1}}}}}
|
> {"set":"frmPreview.editSearch","value":"nobody"}
> {"key":"F3"}
< {"ok":false,"messages":[{"kind":"error","text":"'nobody' not found"}],"focus":"frmPreview.editSearch"}

# A second preview of the same report is one of its own.
> {"click":"frmPreview.btnLast"}
> {"sql":"UPDATE GLHist SET Amount = 4 WHERE Amount = 3"}
> {"click":"frmGLHistory.mnuPrint"}
< {"opened":["frmPreview2"]}
> {"state":"frmPreview2"}
< {"state":{"controls":{"pgvPages":{"page":1,"zoom":100,"found":""}}}}
> {"state":"frmPreview"}
< {"state":{"controls":{"pgvPages":{"page":3,"zoom":200}}}}
> {"close":"frmPreview"}
< {"closed":["frmPreview"]}
> {"state":"frmPreview2"}
< {"state":{"controls":{"pgvPages":{"count":3}}}}

# Paper.
> {"click":"frmPreview2.btnPrint"}
< {"waiting":{"dialog":{"kind":"print","caption":"Print","text":"3 pages","buttons":["OK","Cancel"],"default":"letter"}}}
> {"answer":null}
< {"ok":false,"messages":[],"finished":[{"aborted":true}],"waiting":null}
> {"click":"frmPreview2.btnPrint"}
| {"from":0}
| {"to":4}
| {"from":3,"to":2}
| {"copies":0}
> {"answer":{1}}
< {"ok":false,"error":{"text":"The answer is null, or an object with pages from 1 to 3"}}
|
> {"answer":{"from":2,"to":3,"copies":3}}
< {"ok":true,"messages":[]}
> {"key":"Ctrl+P"}
> {"answer":"OK"}
? jobs ["0001 GL History pages 2-3.pdf","0002 GL History pages 2-3.pdf","0003 GL History pages 2-3.pdf",
   "0004 GL History pages 1-3.pdf"]
# Of one page there is none to choose.
> {"menu":"GL > JVs"}
> {"click":"frmJVs.mnuPrintList"}
< {"opened":["frmPreview"]}
> {"click":"frmPreview.btnPrint"}
< {"waiting":{"dialog":{"text":"1 page"}}}
> {"answer":{"from":1}}
< {"ok":false,"error":{"text":"'from' is not asked, or has no such value","exists":["printer","copies"]}}
> {"answer":{"printer":"letter"}}
< {"ok":true}

# Files.
| btnPDF | Export Report to PDF | PDF files (*.pdf)|*.pdf | pdf
| btnExcel | Export Report to Excel | Excel files (*.xlsx)|*.xlsx | xlsx
> {"click":"frmPreview.{1}"}
< {"waiting":{"dialog":{"kind":"file","caption":"{2}","text":"{3}","default":"Journal Vouchers"}}}
> {"answer":null}
< {"ok":false,"messages":[],"finished":[{"aborted":true}],"outside":[]}
> {"click":"frmPreview.{1}"}
> {"answer":"{folder}/files/JVs.{4}"}
< {"ok":false,"messages":[{"kind":"error",
   "text":"Could not write '{folder}/files/JVs.{4}': No such file or directory"}],"outside":[]}
> {"click":"frmPreview.{1}"}
> {"answer":"{folder}/settings"}
< {"ok":false,"messages":[{"kind":"error","text":"Could not write '{folder}/settings': something else has this name"}]}
|
= files/JVs.pdf ["an older file"]
| btnPDF | pdf
| btnExcel | xlsx
| btnExcel | xlsx
> {"click":"frmPreview.{1}"}
> {"answer":"{folder}/files/JVs.{2}"}
< {"ok":true,"messages":[],"outside":["{folder}/files/JVs.{2}"]}
|
? files ["JVs.pdf","JVs.xlsx"]

# What the list shows is what prints: its rows, in its order. Figures lead to vouchers while these are there.
> {"close":"frmPreview"}
> {"click":"frmJVs.mnuFilter"}
> {"set":"frmJVsFilter.radPosted","value":"Yes"}
> {"click":"frmJVsFilter.btnOK"}
> {"click":"frmJVs.mnuSortDescription"}
> {"click":"frmJVs.mnuPrintList"}
> {"state":"frmPreview","page":1}
< {"state":{"controls":{"pgvPages":{"count":1,"links":["1001","1003"]}}}}
> {"follow":"frmPreview.pgvPages","text":"1001"}
< {"opened":["frmJV"]}
> {"state":"frmJV"}
< {"state":{"title":"JV 1001"}}
> {"close":"frmJV"}
> {"sql":"DELETE FROM JV WHERE JVID = 3"}
> {"follow":"frmPreview.pgvPages","text":"1003"}
< {"ok":false,"messages":[{"kind":"error","text":"This record has been deleted by another user"}],"opened":[]}
> {"follow":"frmPreview.pgvPages","text":"500.00"}
< {"ok":false,"error":{"text":"'500.00' leads nowhere","exists":["1001","1003"]}}
# One that was purged is told; the row of a reversal leads to the voucher of the period before.
> {"state":"frmPreview2","page":1}
< {"state":{"controls":{"pgvPages":{"links":["1001","(10.00)","..."]}}}}
> {"follow":"frmPreview2.pgvPages","text":"1004"}
< {"ok":false,"messages":[{"text":"JV 1004 not found...\rIt may have been deleted or purged."}],"opened":[]}
> {"follow":"frmPreview2.pgvPages","page":3,"text":"1001"}
< {"opened":["frmJV"]}
> {"close":"frmJV"}
> {"follow":"frmPreview2.pgvPages","page":4,"text":"1001"}
< {"ok":false,"error":{"text":"There is no page 4"}}
> {"click":"frmJVs.mnuPrint"}
< {"opened":["frmPreview3"]}
> {"state":"frmPreview3"}
< {"state":{"controls":{"pgvPages":{"title":"Journal Voucher","count":1}}}}
# Every list prints.
| Banks | mnuPrint | Banks
| Currencies | mnuPrint | Currencies
| GLAccounts | mnuPrint | GL Accounts
| GLBalances | mnuPrintAuto | GL Totals
| GLBudget | mnuPrint | GL Budget
> {"open":"Tfrm{1}"}
> {"click":"frm{1}.{2}"}
< {"opened":["frmPreview4"]}
> {"state":"frmPreview4"}
< {"state":{"controls":{"pgvPages":{"title":"{3}","count":1}}}}
> {"close":"frmPreview4"}
|
# Previews go with their company.
> {"menu":"Companies > Acme"}
> {"screens":true}
< {"screens":[{}]}

# Without a printer nothing is printed, unless the person knows of one; that is remembered.
@ --today 2026-03-05 --country Canada --printer none
> {"menu":"GL > JVs"}
> {"click":"frmJVs.mnuPrintList"}
< {"waiting":{"dialog":{"kind":"warning","text":"No printer driver was detected. Do you have a printer installed?",
   "buttons":["Yes","No"],"default":"No"}}}
> {"answer":"No"}
< {"ok":false,"opened":[],"messages":[{"kind":"error","text":"You do not have a default printer defined.\r\rTo preview or print reports a printer must be defined, though not necessarily attached."}]}
> {"click":"frmJVs.mnuPrintList"}
> {"answer":"Yes"}
< {"ok":true,"opened":["frmPreview"],"messages":[]}
> {"click":"frmJVs.mnuPrintList"}
< {"ok":true,"opened":["frmPreview2"],"waiting":null}
