# From an account to its totals, its history and the vouchers behind it, and back; filters, finding, the text file.
@ --today 2026-03-05 --country Canada
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (2, '2000', 'Alimony', 2)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (3, '4000', 'Sales', 3)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (4, 'X5''0', 'Unused', 4)
| GLAcSub1 (SubAccountID, SubAccount, SubAccountName) VALUES (1, 'N', 'North')
| GLAcSub3 (SubAccountID, SubAccount, SubAccountName) VALUES (2, 'R', 'Retail')
| GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal, Amount3, Amount12) VALUES (1, 2026, 'A', 100.5, 1500.25, -2)
| GLActual (GLAccountID, SubAccount1ID, SubAccount3ID, GLYear, ActualBudget, Amount1) VALUES (1, 1, 2, 2026, 'A', 7)
| GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal) VALUES (2, 2025, 'A', -30)
| GLActual (GLAccountID, GLYear, ActualBudget, Amount3) VALUES (3, 2026, 'A', -1500.25)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted, AutoReverse) VALUES (5, 2026, 3, 1001, 'GL', 'JV', '2026-03-02', 'Sold', 1500.25, true, false)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, TransDescription, JVAmount, Posted, AutoReverse) VALUES (6, 2025, 12, 1002, 'GL', 'JV', '2025-12-30', 'Accrued', 7, true, true)
| JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (5, 1, 1, 1500.25)
| JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (5, 2, 3, -1500.25)
| JVDet (JVID, Seq, GLAccountID, SubAccount1ID, SubAccount3ID, GLAmount) VALUES (6, 1, 1, 1, 2, -7)
| JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (6, 2, 2, 7)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID) VALUES (1, 2026, 3, 'GL', 'JV', 1001, '2026-03-02', 1500.25, 'Sold', 5)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID) VALUES (3, 2026, 3, 'GL', 'JV', 1001, '2026-03-02', -1500.25, 'Sold', 5)
| GLHist (GLAccountID, SubAccount1ID, SubAccount3ID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID) VALUES (1, 1, 2, 2026, 1, 'GL', 'JVR', 1002, '2025-12-30', 7, 'Accrued', 6)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription) VALUES (2, 2025, 12, 'GL', 'JV', 1002, '2025-12-29', 7, 'Cancelled')
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, JVID) VALUES (2, 2025, 11, 'GL', 'JV', 77, '2025-11-05', 9, 'Lost', 88)
| GLHist (GLAccountID, GLYear, GLPeriod, Source, TransType, JVNumber, TransDate, Amount, TransDescription, ChequeID) VALUES (2, 2025, 10, 'AP', 'Chq', 78, '2025-10-05', 9, 'Paid', 3)
> {"sql":"INSERT INTO {1}"}
|
> {"menu":"GL > Totals"}
< {"opened":["frmGLBalances"],"focus":"frmGLBalances.grdGLActual[0].GLAccount"}
> {"state":"frmGLBalances"}
< {"state":{"title":"GL Totals","controls":{"grdGLActual":{"total":5,"columns":[{"caption":"Account no."},{"caption":"Name"},
   {"caption":"Year"},{"caption":"Opening Balance"},{"caption":"Period 1"},{"caption":"Period 2"},{"caption":"Period 3"},
   "...",{"caption":"Period 12"},{"caption":"Total Change"}],"rows":[
   {"cells":{"GLAccount":"1000","Name":"Cash","GLYear":"2026","OpeningBal":"100.50","Amount1":"","Amount3":"1,500.25",
   "Amount12":"(2.00)","TotalChange":"1,498.25"}},
   {"cells":{"GLAccount":"1000","Name":"Cash - North - Retail","Amount1":"7.00","TotalChange":"7.00"}},
   {"cells":{"GLAccount":"2000","GLYear":"2025","OpeningBal":"(30.00)","TotalChange":"0.00"}},
   {"cells":{"GLAccount":"4000"}},{"cells":{"GLAccount":"X5'0","Name":"Unused","GLYear":"","OpeningBal":""}}]}},
   "menus":[{"path":"&Edit > &Find..."},{"path":"&Edit > F&ilter..."},{"path":"&Edit > &Refresh"},
   {"path":"&View > &History"},{"path":"&View > &Budget","enabled":true},
   {"path":"&View > &Print > Data: &Auto (Balance or Net Change)"},{"path":"&View > &Print > Data: &Net Change"},
   {"path":"&View > &Print > Data: &Balance"},{"path":"&View > &Export..."},{"path":"&Sort by > Account &no.","checked":true},{"path":"&Sort by > &Name"}]}}

# Sorting and reading anew keep the row.
> {"grid":"frmGLBalances.grdGLActual","do":"goto","row":1}
> {"click":"frmGLBalances.mnuSortName"}
> {"state":"frmGLBalances"}
< {"state":{"controls":{"grdGLActual":{"active":{"row":2},"rows":[{"cells":{"Name":"Alimony"}},{"cells":{"Name":"Cash"}},
   {"cells":{"Name":"Cash - North - Retail"},"active":true},{"cells":{"Name":"Sales"}},{"cells":{"Name":"Unused"}}]}}}}
> {"sql":"UPDATE GLActual SET Amount1 = 8 WHERE SubAccount1ID = 1"}
> {"key":"F5"}
> {"state":"frmGLBalances"}
< {"state":{"controls":{"grdGLActual":{"active":{"row":2},"rows":["...",{"cells":{"TotalChange":"8.00"},"active":true},"..."]}}}}
> {"click":"frmGLBalances.mnuSortAccountNo"}

# Filters.
| editAccountFrom | 2000 | 3
| editAccountTo | 2000 | 3
| editAccountFrom | x5'0 | 1
| cboAccountType | Revenue | 1
| editSubAccount1 | n | 1
| editSubAccount3 | R | 1
| editGLYear | 25 | 1
> {"click":"frmGLBalances.mnuFilter"}
< {"waiting":{"modal":"frmGLBalancesFilter"}}
> {"set":"frmGLBalancesFilter.{1}","value":"{2}"}
> {"click":"frmGLBalancesFilter.btnOK"}
> {"state":"frmGLBalances"}
< {"state":{"title":"GL Totals (Filtered)","controls":{"grdGLActual":{"total":{3}}}}}
> {"click":"frmGLBalances.mnuFilter"}
> {"click":"frmGLBalancesFilter.btnReset"}
> {"click":"frmGLBalancesFilter.btnOK"}
> {"state":"frmGLBalances"}
< {"state":{"title":"GL Totals","controls":{"grdGLActual":{"total":5}}}}
|
> {"click":"frmGLBalances.mnuFilter"}
> {"set":"frmGLBalancesFilter.editGLYear","value":"2026"}
< {"ok":false,"messages":[{"text":"Year invalid...\rEnter year as 2 digits"}]}
> {"set":"frmGLBalancesFilter.editGLYear","value":"26"}
> {"set":"frmGLBalancesFilter.editAccountTo","value":"1000"}
> {"click":"frmGLBalancesFilter.btnOK"}

# The file has what the list shows.
> {"click":"frmGLBalances.mnuExport"}
< {"waiting":{"dialog":{"kind":"file","caption":"Export","default":"GLTotals",
   "text":"Excel files (*.xlsx)|*.xlsx|Text files (*.txt)|*.txt"}}}
> {"answer":null}
< {"ok":false,"messages":[],"finished":[{"aborted":true}]}
> {"click":"frmGLBalances.mnuExport"}
> {"answer":"{folder}/nowhere/totals.txt"}
< {"ok":false,"messages":[{"kind":"error","text":"Could not write '{folder}/nowhere/totals.txt': No such file or directory"}]}
> {"click":"frmGLBalances.mnuExport"}
> {"answer":"{folder}/totals.txt"}
< {"ok":true}
? totals.txt ["GLAccount\tSub1\tSub2\tSub3\tAccountName\tSub1Name\tSub2Name\tSub3Name\tAccountType\tGLYear\tOpeningBal\tPeriod1\tPeriod2\tPeriod3\tPeriod4\tPeriod5\tPeriod6\tPeriod7\tPeriod8\tPeriod9\tPeriod10\tPeriod11\tPeriod12\tTotal Change",
   "1000\t\t\t\tCash\t\t\t\t1\t2026\t100.5\t\t\t1500.25\t\t\t\t\t\t\t\t\t-2\t1498.25",
   "1000\tN\t\tR\tCash\tNorth\t\tRetail\t1\t2026\t\t8\t\t\t\t\t\t\t\t\t\t\t\t8"]

# Finding.
> {"type":"frmGLBalances.grdGLActual","keys":"4"}
< {"waiting":{"modal":"frmGLAccountSearch"}}
> {"state":"frmGLAccountSearch"}
< {"state":{"title":"Find Account"}}
> {"click":"frmGLAccountSearch.btnOK"}
< {"messages":[{"kind":"error","text":"'4000' not found in list"}]}
> {"click":"frmGLBalances.mnuFilter"}
> {"click":"frmGLBalancesFilter.btnReset"}
> {"click":"frmGLBalancesFilter.btnOK"}
> {"type":"frmGLBalances.grdGLActual","keys":"4"}
> {"click":"frmGLAccountSearch.btnOK"}
< {"ok":true}
> {"state":"frmGLBalances"}
< {"state":{"controls":{"grdGLActual":{"active":{"row":3}}}}}
> {"key":"Ctrl+F"}
> {"click":"frmGLAccountSearch.btnCancel"}
< {"ok":true,"messages":[]}

# From the totals to the history of the account: by its own index, without the columns that say the same.
> {"grid":"frmGLBalances.grdGLActual","do":"goto","row":0}
> {"key":"Enter"}
< {"opened":["frmGLHistory"]}
> {"state":"frmGLHistory"}
< {"state":{"title":"GL History (Filtered)","controls":{"grdGLHist":{"total":2,"columns":[{"caption":"Period"},{"caption":"Date"},
   {"caption":"JV no."},{"caption":"Source"},{"caption":"Description"},{"caption":"Amount"},
   {"caption":"Account no.","visible":false},{"caption":"Name","visible":false}],"rows":[
   {"cells":{"GLPeriod":"3/26","TransDate":"02 Mar 26","JVNumber":"1001","Source":"GL JV","TransDescription":"Sold",
   "Amount":"1,500.25"},"active":true},{"cells":{"GLPeriod":"1/26","Source":"GL JVR"}}]},
   "lblJV":{"caption":"JV 1001: 1,500.25"},"lblAutoReverse":{"visible":false},"grdJVDet":{"rows":[
   {"cells":{"GLAccount":"1000","Name":"Cash","GLAmount":"1,500.25"}},{"cells":{"GLAccount":"4000","GLAmount":"(1,500.25)"}}]}}}}
> {"grid":"frmGLHistory.grdGLHist","do":"goto","row":1}
> {"state":"frmGLHistory"}
< {"state":{"controls":{"lblJV":{"caption":"JV 1002: 7.00"},"lblAutoReverse":{"visible":true},"grdJVDet":{"rows":[
   {"cells":{"Name":"Cash - North - Retail"}},{"cells":{"GLAccount":"2000"}}]}}}}

# Asked for from the menu it shows all, newest first.
> {"menu":"GL > History"}
> {"state":"frmGLHistory"}
< {"state":{"title":"GL History","controls":{"grdGLHist":{"total":6,"columns":["...",{"caption":"Account no.","visible":true},
   {"caption":"Name","visible":true}],"active":{"row":0},"rows":[{"cells":{"JVNumber":"1001","GLAccount":"4000"}},
   {"cells":{"GLAccount":"1000"}},{"cells":{"Source":"GL JVR","Name":"Cash - North - Retail"}},
   {"cells":{"TransDescription":"Cancelled"}},{"cells":{"TransDescription":"Lost"}},{"cells":{"Source":"AP Pmt"}}]}},
   "menus":[{"path":"&Edit > F&ilter..."},{"path":"&Edit > &Refresh"},{"path":"&View > &Source"},{"path":"&View > &JV"},
   {"path":"&View > &Print..."}]}}

# To the voucher: by its id; by its number for a row without one; in the period before for a reversing one.
| 0 | 1001
| 2 | 1002
| 3 | 1002
> {"grid":"frmGLHistory.grdGLHist","do":"goto","row":{1}}
> {"click":"frmGLHistory.mnuJV"}
< {"opened":["frmJVs"]}
> {"state":"frmJVs"}
< {"state":{"title":"Journal Vouchers","controls":{"grdJV":{"rows":["...",{"cells":{"JVNumber":"{2}"},"active":true},"..."]}}}}
> {"close":"frmJVs"}
> {"click":"frmGLHistory.mnuSource"}
< {"opened":["frmJV"]}
> {"state":"frmJV"}
< {"state":{"title":"JV {2}"}}
> {"close":"frmJV"}
|
> {"grid":"frmGLHistory.grdGLHist","do":"goto","row":4}
> {"click":"frmGLHistory.mnuJV"}
< {"ok":false,"messages":[{"kind":"error","text":"JV 77 not found...\rIt may have been deleted or purged."}],"opened":[]}
> {"click":"frmGLHistory.mnuSource"}
< {"ok":false,"messages":[{"kind":"error","text":"JV 77 not found...\rIt may have been purged."}],"opened":[]}
> {"state":"frmGLHistory"}
< {"state":{"controls":{"lblJV":{"caption":""},"grdJVDet":{"total":0}}}}
# The list behind a payment is not in this version yet.
> {"grid":"frmGLHistory.grdGLHist","do":"goto","row":5}
> {"state":"frmGLHistory"}
< {"state":{"menus":["...",{"path":"&View > &Source","enabled":false},"..."]}}

# The filter.
| editAccountFrom | 2000 | 4
| editAccountTo | 1000 | 2
| editAccountFrom | 6 | 0
| editDateFrom | 2025-12-30 | 3
| editDateTo | 2025-12-29 | 3
| cboSource | AP Payments | 1
| cboSource | GL JVs | 5
> {"click":"frmGLHistory.mnuFilter"}
< {"waiting":{"modal":"frmGLHistoryFilter"}}
> {"set":"frmGLHistoryFilter.{1}","value":"{2}"}
> {"click":"frmGLHistoryFilter.btnOK"}
> {"state":"frmGLHistory"}
< {"state":{"title":"GL History (Filtered)","controls":{"grdGLHist":{"total":{3}}}}}
> {"click":"frmGLHistory.mnuFilter"}
> {"click":"frmGLHistoryFilter.btnReset"}
> {"click":"frmGLHistoryFilter.btnOK"}
> {"state":"frmGLHistory"}
< {"state":{"title":"GL History","controls":{"grdGLHist":{"total":6}}}}
|
| From | 12 | 25 | 4
| To | 12 | 25 | 3
| To | 1 | 26 | 4
| From | 1 | 26 | 3
> {"click":"frmGLHistory.mnuFilter"}
> {"set":"frmGLHistoryFilter.editPeriod{1}","value":"{2}"}
> {"click":"frmGLHistoryFilter.btnOK"}
< {"ok":false,"messages":[{"text":"Period invalid...\rEnter period and year"}],"focus":"frmGLHistoryFilter.editYear{1}"}
> {"set":"frmGLHistoryFilter.editYear{1}","value":"{3}"}
> {"click":"frmGLHistoryFilter.btnOK"}
> {"state":"frmGLHistory"}
< {"state":{"controls":{"grdGLHist":{"total":{4}}}}}
> {"click":"frmGLHistory.mnuFilter"}
> {"click":"frmGLHistoryFilter.btnReset"}
> {"click":"frmGLHistoryFilter.btnOK"}
|
# One account and more conditions, in whatever place the account stands among them.
> {"click":"frmGLHistory.mnuFilter"}
> {"set":"frmGLHistoryFilter.editAccountFrom","value":"2000"}
> {"set":"frmGLHistoryFilter.editAccountTo","value":"2000"}
> {"set":"frmGLHistoryFilter.cboSource","value":"GL JVs"}
> {"click":"frmGLHistoryFilter.btnOK"}
> {"state":"frmGLHistory"}
< {"state":{"controls":{"grdGLHist":{"total":2,"columns":["...",{"caption":"Name","visible":false}]}}}}

# From accounts and vouchers. A jump takes a filter off that was there.
> {"menu":"GL > Accounts"}
> {"grid":"frmGLAccounts.grdGLAccnt","do":"locate","values":{"GLAccount":"2000"}}
> {"click":"frmGLAccounts.mnuTotals"}
> {"state":"frmGLBalances"}
< {"state":{"title":"GL Totals (Filtered)","controls":{"grdGLActual":{"total":1}}}}
> {"click":"frmGLAccounts.mnuHistory"}
> {"state":"frmGLHistory"}
< {"state":{"title":"GL History (Filtered)","controls":{"grdGLHist":{"total":3}}}}
> {"menu":"GL > JVs"}
> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1001}}
> {"click":"frmJVs.mnuHistory"}
> {"state":"frmGLHistory"}
< {"state":{"title":"GL History (Filtered)","controls":{"grdGLHist":{"total":2}}}}
> {"click":"frmGLHistory.mnuFilter"}
> {"set":"frmGLHistoryFilter.editAccountTo","value":"1000"}
> {"click":"frmGLHistoryFilter.btnOK"}
> {"state":"frmGLHistory"}
< {"state":{"controls":{"grdGLHist":{"total":1}}}}

# Without a row there is nothing to do.
> {"sql":"DELETE FROM GLHist"}
> {"click":"frmGLHistory.mnuRefresh"}
> {"click":"frmGLHistory.mnuJV"}
< {"ok":false,"messages":[],"opened":[]}
> {"sql":"DELETE FROM GLAccnt"}
> {"click":"frmGLBalances.mnuRefresh"}
> {"click":"frmGLBalances.mnuHistory"}
< {"ok":false,"messages":[],"opened":[]}
