# A clerk enters journal vouchers: what a new one begins with, its lines and their checks, what saving asks for.
#
# Words of vouchers that no story can hear:
# - "GL Amounts have not been entered", of a voucher without debits: the check for debits comes before and says so.
# - "Import JV Data is already running.\rMultiple instances are not allowed": the import's table in memory is seen by one
#   program only, whose one import is modal; no other command that could hold it open runs meanwhile.
# - The store's own words in the record-lock dialog: of damaged files and full disks; the store's tests make those.
# - The store's words of a control table in use: numbers are held for a moment only, and waited for.
@ --today 2026-03-05 --country Canada --date-format MM/dd/yyyy
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (2, '5000', 'Rent', 4)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType, Suspended) VALUES (3, '6000', 'Old', 4, true)
| GLAcSub1 (SubAccountID, SubAccount, SubAccountName) VALUES (1, 'East', 'Eastern')
| GLAcSub1 (SubAccountID, SubAccount, SubAccountName, Suspended) VALUES (2, 'OLD', 'Closed', true)
| GLAcSub2 (SubAccountID, SubAccount, SubAccountName) VALUES (1, 'A', 'Alpha')
| GLAcSub3 (SubAccountID, SubAccount, SubAccountName) VALUES (1, 'Z', 'Omega')
> {"sql":"INSERT INTO {1}"}
|
> {"sql":"UPDATE Company SET FiscalYear = NULL"}
> {"menu":"GL > JVs"}
> {"click":"frmJVs.mnuNew"}
< {"opened":["frmJV"],"focus":"frmJV.editGLPeriod"}
> {"state":"frmJV"}
< {"state":{"title":"New Journal Voucher","cursor":"insert","default":"btnOK","controls":{
   "editGLPeriod":{"value":"3"},"editGLYear":{"value":"26","data":2026},"editJVNumber":{"value":"1001","caption":"&JV no.:"},
   "editTransDate":{"value":"05 Mar 26","data":"2026-03-05","caption":"Da&te:"},
   "editTransDescription":{"value":"","caption":"D&escription:"},
   "chkAutoReverse":{"value":"No","caption":"&Auto-Reverse","hint":"Create reversing JV in next period"},
   "lblPosted":{"visible":false,"caption":"POSTED"},"btnUnpost":{"visible":false},
   "grdJVDet":{"total":0,"columns":[{"caption":"Account"},{"caption":"Sub1"},{"caption":"Sub2"},{"caption":"Sub3"},
   {"caption":"Name","readOnly":true},{"caption":"Amount"}]},
   "lblTotals":{"caption":"Debits: 0.00   Credits: 0.00"},"btnOK":{"caption":"OK"},"btnOKNew":{"caption":"OK && Ne&w"},
   "btnNew":{"hint":"New line","enabled":true},"btnDelete":{"hint":"Delete line","enabled":true},"btnCancel":{}}}}

# Periods and dates.
| editGLPeriod | 0 | Period must be between 1 and 12
| editGLPeriod | 13 | Period must be between 1 and 12
| editGLPeriod | x | Period must be between 1 and 12
| editGLYear | 100 | Period invalid...\rEnter year as 2 digits
| editGLYear | 2026 | Period invalid...\rEnter year as 2 digits
| editGLYear | -1 | Period invalid...\rEnter year as 2 digits
| editGLYear | x | Period invalid...\rEnter year as 2 digits
| editTransDate | 02/30/26 | '02/30/26' is not a valid date
| editJVNumber | A1 | 'A1' is not a whole number from -2147483648 to 2147483647
> {"set":"frmJV.{1}","value":"{2}"}
< {"ok":false,"messages":[{"kind":"error","text":"{3}"}],"focus":"frmJV.{1}"}
> {"key":"Esc"}
|
| editGLYear | 0 | 00 | 2000
| editGLYear | 49 | 49 | 2049
| editGLYear | 50 | 50 | 1950
| editGLYear | 99 | 99 | 1999
| editGLYear | 26 | 26 | 2026
| editGLPeriod | 12 | 12 | 12
| editGLPeriod | 1 | 1 | 1
| editTransDate | 1/1/49 | 01 Jan 49 | "2049-01-01"
| editTransDate | 1/1/50 | 01 Jan 50 | "1950-01-01"
| editTransDate | 02/29/00 | 29 Feb 00 | "2000-02-29"
| editTransDate | 030126 | 01 Mar 26 | "2026-03-01"
| editTransDate | 2026-03-31 | 31 Mar 26 | "2026-03-31"
> {"set":"frmJV.{1}","value":"{2}"}
> {"state":"frmJV"}
< {"state":{"controls":{"{1}":{"value":"{3}","data":{4}}}}}
|

# The calendar: opened by its button, or by F2 in the field.
> {"click":"frmJV.btnTransDate"}
< {"opened":["frmCalendar"],"waiting":{"modal":"frmCalendar"}}
> {"state":"frmCalendar"}
< {"state":{"controls":{"monDate":{"data":"2026-03-31"},"lblMonth":{"caption":"March, 2026"},
   "lblToday":{"caption":"Today: 05 Mar 26"}}}}
| {"click":"frmCalendar.btnPriorMonth"} | 2026-02-28 | February, 2026
| {"click":"frmCalendar.btnNextMonth"} | 2026-03-28 | March, 2026
| {"set":"frmCalendar.monDate","value":"2025-12-30"} | 2025-12-30 | December, 2025
| {"key":"Down"} | 2026-01-06 | January, 2026
| {"key":"Up"} | 2025-12-30 | December, 2025
| {"key":"PgDn"} | 2026-01-30 | January, 2026
| {"key":"PgUp"} | 2025-12-30 | December, 2025
| {"key":"Right"} | 2025-12-31 | December, 2025
| {"key":"Left"} | 2025-12-30 | December, 2025
| {"click":"frmCalendar.btnToday"} | 2026-03-05 | March, 2026
| {"set":"frmCalendar.monDate","value":""} | 2026-03-05 | March, 2026
> {1}
> {"state":"frmCalendar"}
< {"state":{"controls":{"monDate":{"data":"{2}"},"lblMonth":{"caption":"{3}"}}}}
|
> {"click":"frmCalendar.btnOK"}
< {"closed":["frmCalendar"],"focus":"frmJV.editTransDate"}
> {"key":"F2"}
> {"set":"frmCalendar.monDate","value":"2020-01-01"}
> {"click":"frmCalendar.btnCancel"}
> {"state":"frmJV"}
< {"state":{"controls":{"editTransDate":{"data":"2026-03-05"}}}}

# The period's checks, in their order; the focus is on the period.
> {"set":"frmJV.editGLPeriod","value":""}
> {"click":"frmJV.btnOK"}
< {"ok":false,"messages":[{"text":"Field 'Period' must have a value"}],"focus":"frmJV.editGLPeriod"}
> {"set":"frmJV.editGLPeriod","value":"3"}
> {"set":"frmJV.editGLYear","value":""}
> {"click":"frmJV.btnOK"}
< {"ok":false,"messages":[{"text":"Field 'Year of Period' must have a value"}],"focus":"frmJV.editGLYear"}
> {"set":"frmJV.editGLYear","value":"25"}
| editJVNumber | 1001 | JV no.
| editTransDate | 03/05/26 | Date
> {"set":"frmJV.{1}","value":""}
> {"click":"frmJV.btnOK"}
< {"ok":false,"messages":[{"text":"Field '{3}' must have a value"}],"focus":"frmJV.{1}"}
> {"set":"frmJV.{1}","value":"{2}"}
|
> {"click":"frmJV.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Current fiscal year is not yet defined...\rSee \"Your Company\""}],
   "focus":"frmJV.editGLPeriod"}
> {"sql":"UPDATE Company SET FiscalYear = 2026, EPeriodFromYYYY = 2026, EPeriodFromPP = 2, EPeriodToYYYY = 2026, EPeriodToPP = 11, WPeriodFromYYYY = 2026, WPeriodFromPP = 3, WPeriodToYYYY = 2026, WPeriodToPP = 9"}
> {"click":"frmJV.btnOK"}
< {"ok":false,"messages":[{"kind":"error",
   "text":"GL Period is prior to current fiscal year \ras defined by \"Your Company\""}],"focus":"frmJV.editGLPeriod"}
> {"set":"frmJV.editGLYear","value":"26"}
| 1
| 12
> {"set":"frmJV.editGLPeriod","value":"{1}"}
> {"set":"frmJV.editTransDescription","value":"Rent"}
> {"click":"frmJV.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"GL Period is not within allowed range \ras defined by \"Your Company\""}],
   "focus":"frmJV.editGLPeriod"}
|
| 2
| 10
> {"set":"frmJV.editGLPeriod","value":"{1}"}
> {"set":"frmJV.editTransDescription","value":""}
> {"click":"frmJV.btnOK"}
< {"waiting":{"dialog":{"kind":"warning","caption":"Warning","buttons":["OK","Cancel"],"default":"Cancel",
   "text":"GL Period is not within expected range \ras defined by \"Your Company\"."}}}
> {"answer":"Cancel"}
< {"ok":false,"messages":[],"focus":"frmJV.editGLPeriod","finished":[{"command":"frmJV.btnOK","aborted":true}]}
|
> {"click":"frmJV.btnOK"}
> {"answer":"OK"}
< {"ok":false,"messages":[{"kind":"error","text":"Amounts and GL Accounts have not been entered"}],
   "focus":"frmJV.grdJVDet.GLAccount"}
> {"set":"frmJV.editGLPeriod","value":"3"}

# Typing into a line.
| GLAccount | 9999 | GL Account not found...\rSelect a different account or press Esc to undo
| GLAccount | 6000 | GL Account has been suspended
| SubAccount1 | West | Subaccount not found...\rSelect a different subaccount or press Esc to undo
| SubAccount1 | OLD | Subaccount has been suspended
| SubAccount2 | B | Subaccount not found...\rSelect a different subaccount or press Esc to undo
| SubAccount3 | B | Subaccount not found...\rSelect a different subaccount or press Esc to undo
| GLAmount | ten | 'ten' is not a valid amount
> {"set":"frmJV.grdJVDet[0].{1}","value":"{2}"}
< {"ok":false,"messages":[{"kind":"error","text":"{3}"}],"focus":"frmJV.grdJVDet[0].{1}"}
> {"key":"Esc"}
|
> {"key":"Esc"}
> {"state":"frmJV"}
< {"state":{"controls":{"grdJVDet":{"total":0}}}}

# Leaving a line: what it misses, and the focus on it. Only Esc, or a value, gets out.
> {"click":"frmJV.btnNew"}
< {"focus":"frmJV.grdJVDet[0].GLAccount"}
> {"set":"frmJV.grdJVDet[0].GLAmount","value":"10"}
> {"click":"frmJV.btnNew"}
< {"ok":false,"messages":[{"kind":"error",
   "text":"Field 'GL Account' must have a value...\rMake changes or press Esc to undo"}],
   "focus":"frmJV.grdJVDet[0].GLAccount"}
> {"set":"frmJV.grdJVDet[0].GLAccount","value":"1000"}
| SubAccount1 | East | GLAcSub1 | GLAcSub1 | Subaccount 1 | SubAccountID
| SubAccount2 | A | GLAcSub2 | GLAcSub2 | Subaccount 2 | SubAccountID
| SubAccount3 | z | GLAcSub3 | GLAcSub3 | Subaccount 3 | SubAccountID
| GLAccount | 1000 | GLAccnt | GLAccnt | GL Account | GLAccountID
> {"set":"frmJV.grdJVDet[0].{1}","value":"{2}"}
> {"sql":"UPDATE {3} SET {6} = 99 WHERE {6} = 1"}
> {"click":"frmJV.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"{5} not found...\rMake changes or press Esc to undo"}],
   "focus":"frmJV.grdJVDet[0].{1}"}
> {"state":"frmJV"}
< {"state":{"controls":{"grdJVDet":{"rows":[{"cells":{"{1}":"?"}}]}}}}
> {"sql":"UPDATE {3} SET {6} = 1 WHERE {6} = 99"}
|
> {"state":"frmJV"}
< {"state":{"controls":{"lblTotals":{"caption":"Debits: 0.00   Credits: 0.00"},"grdJVDet":{"rows":[{"new":true,"cells":{
   "GLAccount":"1000","SubAccount1":"East","SubAccount2":"A","SubAccount3":"Z",
   "Name":"Cash - Eastern - Alpha - Omega","GLAmount":"10.00"}}]}}}}
> {"grid":"frmJV.grdJVDet","do":"append"}
> {"state":"frmJV"}
< {"state":{"controls":{"lblTotals":{"caption":"Debits: 10.00   Credits: 0.00   Diff: 10.00CR"}}}}

# Debits and credits.
> {"click":"frmJV.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"No credits have been entered...\rYou must enter at least one credit amount.\rTip: Credits are entered as minus amounts. Example -10.00"}],"focus":"frmJV.grdJVDet[1].GLAccount"}
> {"set":"frmJV.grdJVDet[1].GLAccount","value":"5000"}
> {"set":"frmJV.grdJVDet[1].GLAmount","value":"-9.99"}
> {"click":"frmJV.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Debits and Credits are out of balance"}],
   "focus":"frmJV.grdJVDet[1].GLAmount"}
> {"state":"frmJV"}
< {"state":{"controls":{"lblTotals":{"caption":"Debits: 10.00   Credits: 9.99CR   Diff: 0.01CR"}}}}
> {"set":"frmJV.grdJVDet[1].GLAmount","value":"-1,010.125"}
> {"set":"frmJV.grdJVDet[0].GLAmount","value":"-10"}
> {"click":"frmJV.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"No debits have been entered...\rYou must enter at least one debit amount.\rTip: Debits are entered as positive amounts. Example 10.00"}],"focus":"frmJV.grdJVDet[2].GLAccount"}
> {"state":"frmJV"}
< {"state":{"controls":{"lblTotals":{"caption":"Debits: 0.00   Credits: 1,020.125CR   Diff: 1,020.125"},
   "grdJVDet":{"total":3}}}}
> {"key":"Esc"}
> {"set":"frmJV.grdJVDet[0].GLAmount","value":"1010.125"}
> {"sql":"SELECT JVID, Seq, GLAccountID, SubAccount1ID, SubAccount3ID, GLAmount FROM JVDet"}
< {"rows":[[1,1,1,1,1,-10],[1,2,2,null,null,-1010.125]]}

# Saved: the next one has the same period and date and a number of its own.
> {"set":"frmJV.editTransDate","value":"2026-03-09"}
> {"key":"Alt+W"}
< {"focus":"frmJV.editGLPeriod","messages":[],"closed":[],"finished":[{"command":"frmJV.btnOKNew"}]}
> {"sql":"SELECT JVID, JVNumber, GLYear, GLPeriod, Source, TransType, Posted, AutoReverse, JVAmount FROM JV"}
< {"rows":[[1,1001,2026,3,"GL","JV",false,false,1010.125]]}
> {"state":"frmJV"}
< {"state":{"title":"New Journal Voucher","cursor":"insert","controls":{"editJVNumber":{"value":"1002"},
   "editGLPeriod":{"value":"3"},"editTransDate":{"data":"2026-03-09"},"grdJVDet":{"total":0},
   "lblTotals":{"caption":"Debits: 0.00   Credits: 0.00"}}}}
> {"close":"frmJV"}
< {"closed":["frmJV"],"waiting":null}
> {"click":"frmJVs.mnuNew"}
> {"set":"frmJV.editTransDescription","value":"Opening"}
> {"state":"frmJV"}
< {"state":{"title":"JV 1003"}}
> {"set":"frmJV.grdJVDet[0].GLAccount","value":"1000"}
> {"click":"frmJV.btnCancel"}
< {"closed":["frmJV"],"focus":"frmJVs.grdJV[0].GLPeriod"}
> {"sql":"SELECT JVID FROM JVDet WHERE JVID = 3"}
< {"rows":[]}
> {"sql":"SELECT NextJVID, NextJVNumber FROM JVCtl"}
< {"rows":[[4,1004]]}

# Where the row of next numbers is older than the vouchers, brought back from a backup, a new one has no lines of another.
> {"sql":"UPDATE JVCtl SET NextJVID = 1"}
> {"click":"frmJVs.mnuNew"}
> {"state":"frmJV"}
< {"state":{"controls":{"grdJVDet":{"total":0}}}}
> {"click":"frmJV.btnCancel"}
> {"sql":"SELECT NextJVID FROM JVCtl"}
< {"rows":[[3]]}
> {"sql":"SELECT COUNT(*) FROM JVDet WHERE JVID = 1"}
< {"rows":[[2]]}
> {"sql":"UPDATE JVCtl SET NextJVID = 3, NextJVNumber = 1003"}

# The same number in the same period; the company's default period.
> {"sql":"UPDATE Company SET DefaultPeriodYYYY = 2026, DefaultPeriodPP = 4"}
> {"click":"frmJVs.mnuNew"}
> {"state":"frmJV"}
< {"state":{"controls":{"editGLPeriod":{"value":"4"},"editJVNumber":{"value":"1003"}}}}
> {"set":"frmJV.editGLPeriod","value":"3"}
> {"set":"frmJV.editJVNumber","value":"1001"}
> {"set":"frmJV.grdJVDet[0].GLAccount","value":"1000"}
> {"set":"frmJV.grdJVDet[0].GLAmount","value":"5"}
> {"click":"frmJV.btnNew"}
> {"set":"frmJV.grdJVDet[1].GLAccount","value":"5000"}
> {"set":"frmJV.grdJVDet[1].GLAmount","value":"5 CR"}
> {"click":"frmJV.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"JV no. already exists for this period"}],"focus":"frmJV.editJVNumber"}
> {"set":"frmJV.editJVNumber","value":"10000001"}
> {"click":"frmJV.btnOK"}
< {"closed":["frmJV"]}
> {"state":"frmJVs"}
< {"state":{"controls":{"grdJV":{"active":{"row":0},"rows":[{"active":true,"cells":{"GLPeriod":"3/26",
   "JVNumber":"10000001","Source":"GL JV","TransDate":"05 Mar 26","TransDescription":"","JVAmount":"5.00"}},
   {"cells":{"JVNumber":"1001"}}]}}}}

# Numbers begin again at the lowest.
| 10000001 | 1001
| 10000000 | 10000000
| 1000 | 1001
> {"sql":"UPDATE JVCtl SET NextJVNumber = {1}"}
> {"click":"frmJVs.mnuNew"}
> {"state":"frmJV"}
< {"state":{"controls":{"editJVNumber":{"value":"{2}"}}}}
> {"close":"frmJV"}
|

# A line keeps an account that is suspended later.
> {"sql":"UPDATE GLAccnt SET Suspended = true WHERE GLAccountID = 1"}
> {"click":"frmJVs.mnuEdit"}
> {"set":"frmJV.grdJVDet[0].GLAmount","value":"6"}
> {"set":"frmJV.grdJVDet[1].GLAmount","value":"(6)"}
> {"click":"frmJV.btnOK"}
< {"closed":["frmJV"]}
> {"sql":"UPDATE GLAccnt SET Suspended = false WHERE GLAccountID = 1"}

# Cancel puts back what it found, whatever happened to the lines.
> {"click":"frmJVs.mnuEdit"}
> {"set":"frmJV.grdJVDet[0].GLAmount","value":"7"}
> {"set":"frmJV.grdJVDet[1].SubAccount1","value":"East"}
> {"set":"frmJV.grdJVDet[1].SubAccount1","value":""}
> {"grid":"frmJV.grdJVDet","do":"append"}
> {"set":"frmJV.grdJVDet[2].GLAccount","value":"5000"}
> {"set":"frmJV.grdJVDet[2].GLAmount","value":"-1"}
> {"grid":"frmJV.grdJVDet","do":"goto","row":0}
> {"click":"frmJV.btnDelete"}
> {"state":"frmJV"}
< {"state":{"cursor":"edit","controls":{"lblTotals":{"caption":"Debits: 0.00   Credits: 7.00CR   Diff: 7.00"}}}}
> {"sql":"SELECT Seq, GLAmount FROM JVDet WHERE JVID = 3"}
< {"rows":[[2,-6],[3,-1]]}
> {"set":"frmJV.editTransDescription","value":"Nonsense"}
> {"click":"frmJV.btnCancel"}
> {"sql":"SELECT Seq, GLAccountID, GLAmount FROM JVDet WHERE JVID = 3"}
< {"rows":[[1,1,6],[2,2,-6]]}
> {"sql":"SELECT TransDescription, JVAmount FROM JV WHERE JVID = 3"}
< {"rows":[[null,6]]}

# Closing asks; the lines are deleted one by one; an empty voucher is none.
> {"click":"frmJVs.mnuEdit"}
> {"key":"Esc"}
< {"closed":["frmJV"],"waiting":null}
> {"click":"frmJVs.mnuEdit"}
> {"grid":"frmJV.grdJVDet","do":"delete"}
> {"grid":"frmJV.grdJVDet","do":"delete"}
> {"click":"frmJV.btnDelete"}
> {"close":"frmJV"}
< {"waiting":{"dialog":{"text":"Do you want to save changes?","buttons":["Yes","No","Cancel"]}}}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"text":"Amounts and GL Accounts have not been entered"}],"closed":[]}
> {"close":"frmJV"}
> {"answer":"Cancel"}
< {"ok":false,"messages":[],"closed":[]}
> {"close":"frmJV"}
> {"answer":"No"}
< {"closed":["frmJV"]}
> {"sql":"SELECT Seq, GLAmount FROM JVDet WHERE JVID = 3"}
< {"rows":[[1,6],[2,-6]]}

# A key in an account opens the picker with it; the subaccounts have theirs.
> {"click":"frmJVs.mnuNew"}
| GLAccount | 5 | frmGLAccountSearch | GL Account | editGLAccount
| SubAccount1 | E | frmGLAccountSubSearch | GL Subaccount 1 | editSubAccount
| SubAccount2 | A | frmGLAccountSubSearch | GL Subaccount 2 | editSubAccount
| SubAccount3 | Z | frmGLAccountSubSearch | GL Subaccount 3 | editSubAccount
> {"type":"frmJV.grdJVDet[0].{1}","keys":"{2}"}
< {"waiting":{"modal":"{3}"}}
> {"state":"{3}"}
< {"state":{"title":"{4}","controls":{"{5}":{"value":"{2}"}}}}
> {"click":"{3}.btnOK"}
|
> {"state":"frmJV"}
< {"state":{"controls":{"grdJVDet":{"rows":[{"cells":{"GLAccount":"5000","SubAccount1":"East","SubAccount2":"A",
   "SubAccount3":"Z","Name":"Rent - Eastern - Alpha - Omega"}}]}}}}
> {"click":"frmJV.btnCancel"}

# A posted voucher is only looked at.
> {"sql":"UPDATE JV SET Posted = true WHERE JVID = 3"}
> {"click":"frmJVs.mnuEdit"}
> {"state":"frmJV"}
< {"state":{"controls":{"lblPosted":{"visible":true},"btnUnpost":{"visible":true},"grdJVDet":{"readOnly":true},
   "btnNew":{"enabled":false},"btnDelete":{"enabled":false},"btnTransDate":{"enabled":false},
   "lblTotals":{"caption":"Debits: 6.00   Credits: 6.00CR"}},"menus":[{"name":"mnuNew","enabled":false},
   {"name":"mnuDelete","enabled":false},{"name":"mnuImportJVData","enabled":false}]}}
| editGLPeriod | 5
| editGLYear | 27
| editJVNumber | 5
| editTransDate | 2026-01-01
| editTransDescription | x
| chkAutoReverse | true
| grdJVDet[0].GLAccount | 5000
| grdJVDet[1].GLAmount | 5
> {"set":"frmJV.{1}","value":"{2}"}
< {"ok":false,"messages":[{"kind":"information","text":"Posted JVs cannot be changed...\r\rTo make changes you need to unpost the JV using the button at the top right\r(not available for JVs from a prior closed year, but you can re-open the year)."}],"finished":["..."]}
|
> {"click":"frmJV.btnOK"}
< {"closed":["frmJV"]}

# A voucher of another source that was unposted is edited like others.
> {"sql":"UPDATE JV SET Posted = false, Source = 'AP', TransType = 'Chq' WHERE JVID = 3"}
> {"click":"frmJVs.mnuRefresh"}
> {"click":"frmJVs.mnuEdit"}
> {"set":"frmJV.editTransDescription","value":"Corrected"}
> {"set":"frmJV.chkAutoReverse","value":true}
> {"click":"frmJV.btnOK"}
> {"sql":"SELECT Source, TransType, TransDescription, AutoReverse FROM JV WHERE JVID = 3"}
< {"rows":[["AP","Chq","Corrected",true]]}

# Without the row of next numbers none is given that a voucher may have already.
> {"sql":"DELETE FROM JVCtl"}
> {"click":"frmJVs.mnuNew"}
< {"ok":false,"messages":[{"text":"The table 'JVCtl' has lost its row of next numbers. Please restore it from a backup."}],
   "opened":[]}
