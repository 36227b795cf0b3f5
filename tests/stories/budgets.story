# Budgets: entered, found, sorted and filtered, deleted; exported, changed and imported again.
#
# Words that no story can hear: those of a second import at once, since the first one is modal.
@ --today 2026-03-05 --country Canada
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (2, '4000', 'Sales', 3)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (3, '5000', 'Rent', 4)
| GLAcSub1 (SubAccountID, SubAccount, SubAccountName) VALUES (4, 'N', 'North')
| GLAcSub2 (SubAccountID, SubAccount, SubAccountName) VALUES (5, 'A', 'Alpha')
| GLAcSub3 (SubAccountID, SubAccount, SubAccountName) VALUES (6, 'R', 'Retail')
> {"sql":"INSERT INTO {1}"}
|
> {"menu":"GL > Budget"}
< {"opened":["frmGLBudget"]}
> {"state":"frmGLBudget"}
< {"state":{"title":"GL Budget","controls":{"grdGLBudget":{"total":3,"columns":[{"caption":"Account no."},{"caption":"Name"},
   {"caption":"Year"},{"caption":"Opening Balance"},{"caption":"Period 1"},"...",{"caption":"Period 12"},
   {"caption":"Total Change"}],"rows":[{"cells":{"GLAccount":"1000","GLYear":"","TotalChange":"0.00"}},"...",{}]}},
   "menus":[{"path":"&Edit > &New"},{"path":"&Edit > &Edit"},{"path":"&Edit > &Delete"},{"path":"&Edit > &Find..."},
   {"path":"&Edit > F&ilter..."},{"path":"&Edit > &Refresh"},{"path":"&View > &History"},{"path":"&View > &Totals"},
   {"path":"&View > &Print...","enabled":true},{"path":"&View > &Export..."},{"path":"&View > &Import..."},
   {"path":"&Sort by > Account &no.","checked":true},{"path":"&Sort by > &Name"}]}}

# A new one: each check in its turn, and the arrows among the amounts.
> {"click":"frmGLBudget.mnuNew"}
< {"opened":["frmGLBudgetAccount"],"focus":"frmGLBudgetAccount.editGLAccount"}
> {"state":"frmGLBudgetAccount"}
< {"state":{"title":"Budget","default":"btnOK","controls":{"editGLYear":{"caption":"&Year:","value":""},
   "editOpeningBal":{"caption":"&Opening Bal:"},"editAmount12":{"caption":"Period 12:"},
   "editTotal":{"caption":"Total:","value":"0.00","readOnly":true}}}}
> {"click":"frmGLBudgetAccount.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Field 'Account' must have a value"}],"focus":"frmGLBudgetAccount.editGLAccount"}
> {"set":"frmGLBudgetAccount.editGLAccount","value":"9"}
< {"ok":false,"messages":[{"kind":"error","text":"Account not found"}]}
> {"key":"Esc"}
> {"set":"frmGLBudgetAccount.editGLAccount","value":"4000"}
> {"click":"frmGLBudgetAccount.btnOK"}
< {"ok":false,"messages":[{"text":"Year invalid...\rEnter year as 2 digits"}],"focus":"frmGLBudgetAccount.editGLYear"}
> {"set":"frmGLBudgetAccount.editGLYear","value":"2026"}
< {"ok":false,"messages":[{"text":"Year invalid...\rEnter year as 2 digits"}],"focus":"frmGLBudgetAccount.editGLYear"}
> {"set":"frmGLBudgetAccount.editGLYear","value":"26"}
> {"state":"frmGLBudgetAccount"}
< {"state":{"title":"2026 Budget","controls":{"lblGLAccount":{"caption":"Sales"}}}}
> {"type":"frmGLBudgetAccount.editOpeningBal","keys":"-5"}
> {"key":"Up"}
< {"focus":"frmGLBudgetAccount.editOpeningBal"}
> {"key":"Down"}
< {"focus":"frmGLBudgetAccount.editAmount1"}
> {"set":"frmGLBudgetAccount.editAmount12","value":"-100.25"}
> {"type":"frmGLBudgetAccount.editAmount12","keys":"-100.25"}
> {"key":"Down"}
< {"focus":"frmGLBudgetAccount.editAmount12"}
> {"key":"Up"}
< {"focus":"frmGLBudgetAccount.editAmount11"}
> {"set":"frmGLBudgetAccount.editAmount11","value":"40"}
> {"state":"frmGLBudgetAccount"}
< {"state":{"controls":{"editOpeningBal":{"value":"(5.00)"},"editTotal":{"value":"(60.25)"}}}}
> {"click":"frmGLBudgetAccount.btnOK"}
< {"ok":false,"messages":[{"text":"Opening balance should not be entered for revenue or expense accounts"}],
   "focus":"frmGLBudgetAccount.editOpeningBal"}
> {"set":"frmGLBudgetAccount.editOpeningBal","value":"0"}
> {"sql":"UPDATE GLAccnt SET GLAccountID = 8 WHERE GLAccountID = 2"}
> {"click":"frmGLBudgetAccount.btnOK"}
< {"ok":false,"messages":[{"text":"GL Account no longer exists"}],"focus":"frmGLBudgetAccount.editGLAccount"}
> {"sql":"UPDATE GLAccnt SET GLAccountID = 2 WHERE GLAccountID = 8"}
| 1 | n | 4
| 2 | a | 5
| 3 | r | 6
> {"set":"frmGLBudgetAccount.editSubAccount{1}","value":"x"}
< {"ok":false,"messages":[{"text":"Subaccount not found...\rSelect a different subaccount or press Esc to undo"}]}
> {"key":"Esc"}
> {"set":"frmGLBudgetAccount.editSubAccount{1}","value":"{2}"}
> {"sql":"UPDATE GLAcSub{1} SET SubAccountID = 77"}
> {"click":"frmGLBudgetAccount.btnOK"}
< {"ok":false,"messages":[{"text":"Subaccount {1} no longer exists"}],"focus":"frmGLBudgetAccount.editSubAccount{1}"}
> {"sql":"UPDATE GLAcSub{1} SET SubAccountID = {3}"}
|
> {"click":"frmGLBudgetAccount.btnOK"}
< {"ok":true,"closed":["frmGLBudgetAccount"]}
> {"sql":"SELECT GLAccountID, SubAccount1ID, SubAccount2ID, SubAccount3ID, GLYear, ActualBudget, OpeningBal, Amount1, Amount11, Amount12 FROM GLBudget"}
< {"rows":[[2,4,5,6,2026,"B",0,null,40,-100.25]]}

# The list stands on it. With and without subaccounts there are two; a third of the same is refused.
> {"state":"frmGLBudget"}
< {"state":{"controls":{"grdGLBudget":{"rows":[{},{"active":true,"cells":{"GLAccount":"4000","Name":"Sales - North - Alpha - Retail",
   "GLYear":"2026","OpeningBal":"0.00","Amount1":"","Amount12":"(100.25)","TotalChange":"(60.25)"}},{}]}}}}
| true
| false
> {"click":"frmGLBudget.mnuNew"}
> {"set":"frmGLBudgetAccount.editGLAccount","value":"4000"}
> {"set":"frmGLBudgetAccount.editGLYear","value":"26"}
> {"set":"frmGLBudgetAccount.editAmount1","value":"-7"}
> {"click":"frmGLBudgetAccount.btnOK"}
< {"ok":{1}}
|
> {"click":"frmGLBudgetAccount.btnOK"}
< {"ok":false,"messages":[{"text":"Budget for this account and year already exists"}],"focus":"frmGLBudgetAccount.editGLAccount"}
> {"close":"frmGLBudgetAccount"}
< {"waiting":{"dialog":{"text":"Do you want to save changes?","buttons":["Yes","No","Cancel"]}}}
> {"answer":"No"}

# An account without a budget gets one by Edit; nothing is asked when it is left as it came.
> {"grid":"frmGLBudget.grdGLBudget","do":"locate","values":{"GLAccount":"5000"}}
> {"key":"Enter"}
< {"opened":["frmGLBudgetAccount"]}
> {"state":"frmGLBudgetAccount"}
< {"state":{"title":"Budget","cursor":"insert","controls":{"editGLAccount":{"value":"5000"}}}}
> {"close":"frmGLBudgetAccount"}
< {"waiting":null,"closed":["frmGLBudgetAccount"]}
> {"click":"frmGLBudget.mnuDelete"}
< {"ok":false,"messages":[],"waiting":null}

# Edit; the year may change.
> {"grid":"frmGLBudget.grdGLBudget","do":"goto","row":1}
> {"click":"frmGLBudget.mnuEdit"}
> {"state":"frmGLBudgetAccount"}
< {"state":{"title":"2026 Budget","cursor":"browse","controls":{"editGLAccount":{"value":"4000"},"editSubAccount1":{"value":""},
   "editGLYear":{"value":"26"},"editAmount1":{"value":"(7.00)"}}}}
> {"set":"frmGLBudgetAccount.editGLYear","value":"27"}
> {"click":"frmGLBudgetAccount.btnOK"}
> {"state":"frmGLBudget"}
< {"state":{"controls":{"grdGLBudget":{"total":4,"rows":[{},{"active":true,"cells":{"GLYear":"2027"}},{"cells":{"GLYear":"2026"}},{}]}}}}

# Sorting keeps the row; filters; finding; the ways to history and totals.
> {"click":"frmGLBudget.mnuSortName"}
> {"state":"frmGLBudget"}
< {"state":{"controls":{"grdGLBudget":{"rows":[{"cells":{"Name":"Cash"}},{"cells":{"Name":"Rent"}},{"active":true,"cells":{"GLYear":"2027"}},{}]}}}}
> {"click":"frmGLBudget.mnuSortAccountNo"}
| editAccountFrom | 5000 | 1
| editAccountTo | 4000 | 3
| cboAccountType | Revenue | 2
| editSubAccount2 | A | 1
| editGLYear | 27 | 1
> {"click":"frmGLBudget.mnuFilter"}
> {"set":"frmGLBudgetFilter.{1}","value":"{2}"}
> {"click":"frmGLBudgetFilter.btnOK"}
> {"state":"frmGLBudget"}
< {"state":{"title":"GL Budget (Filtered)","controls":{"grdGLBudget":{"total":{3}}}}}
> {"click":"frmGLBudget.mnuFilter"}
> {"state":"frmGLBudgetFilter"}
< {"state":{"title":"GL Budget Filter"}}
> {"click":"frmGLBudgetFilter.btnReset"}
> {"click":"frmGLBudgetFilter.btnOK"}
|
> {"type":"frmGLBudget.grdGLBudget","keys":"5"}
< {"waiting":{"modal":"frmGLAccountSearch"}}
> {"click":"frmGLAccountSearch.btnOK"}
> {"state":"frmGLBudget"}
< {"state":{"title":"GL Budget","controls":{"grdGLBudget":{"active":{"row":3}}}}}
> {"grid":"frmGLBudget.grdGLBudget","do":"goto","row":1}
> {"click":"frmGLBudget.mnuHistory"}
> {"state":"frmGLHistory"}
< {"state":{"title":"GL History (Filtered)"}}
> {"click":"frmGLBudget.mnuTotals"}
> {"state":"frmGLBalances"}
< {"state":{"title":"GL Totals (Filtered)","controls":{"grdGLActual":{"total":1,"rows":[{"cells":{"GLAccount":"4000"}}]}}}}
> {"click":"frmGLBalances.mnuBudget"}
> {"state":"frmGLBudget"}
< {"state":{"title":"GL Budget (Filtered)","controls":{"grdGLBudget":{"total":2}}}}
> {"menu":"GL > Accounts"}
> {"grid":"frmGLAccounts.grdGLAccnt","do":"locate","values":{"GLAccount":"1000"}}
> {"click":"frmGLAccounts.mnuBudget"}
> {"state":"frmGLBudget"}
< {"state":{"title":"GL Budget (Filtered)","controls":{"grdGLBudget":{"total":1}}}}
> {"close":"frmGLBudget"}
> {"menu":"GL > Budget"}

# Deleting.
> {"grid":"frmGLBudget.grdGLBudget","do":"goto","row":1}
> {"click":"frmGLBudget.mnuDelete"}
< {"waiting":{"dialog":{"kind":"confirmation","text":"Delete 2027 budget for 4000?","buttons":["Yes","No"]}}}
> {"answer":"No"}
< {"ok":false,"messages":[]}
2> {"menu":"GL > Budget"}
2> {"grid":"frmGLBudget.grdGLBudget","do":"goto","row":1}
2> {"click":"frmGLBudget.mnuEdit"}
2> {"set":"frmGLBudgetAccount.editAmount2","value":"1"}
> {"click":"frmGLBudget.mnuDelete"}
> {"answer":"Yes"}
< {"waiting":{"dialog":{"text":"The 'tblGLBudget' record you are trying to edit or delete is currently locked. Do you want to try again?\r\rThis would happen if the record (customer, invoice, etc.) is currently being edited by another person or process."}}}
2> {"click":"frmGLBudgetAccount.btnCancel"}
> {"answer":"Yes"}
< {"ok":true,"waiting":null}
> {"state":"frmGLBudget"}
< {"state":{"controls":{"grdGLBudget":{"total":3,"rows":[{},{"active":true,"cells":{"GLAccount":"4000","GLYear":"2026"}},{}]}}}}
2> {"click":"frmGLBudget.mnuDelete"}
2> {"answer":"Yes"}
2< {"ok":false,"messages":[{"kind":"error","text":"This record has been deleted by another user"}]}
2> {"click":"frmGLBudget.mnuEdit"}
2< {"ok":false,"messages":[{"kind":"error","text":"This record has been deleted by another user"}]}
2> {"click":"frmGLBudget.mnuRefresh"}

# A budget goes out as a text file and comes back with other figures, which replace those that were there.
> {"click":"frmGLBudget.mnuExport"}
< {"waiting":{"dialog":{"kind":"file"}}}
> {"answer":null}
< {"ok":false,"messages":[]}
> {"click":"frmGLBudget.mnuExport"}
> {"answer":"{folder}/budget.txt"}
? budget.txt ["GLAccount\tSub1\tSub2\tSub3\tAccountName\tSub1Name\tSub2Name\tSub3Name\tAccountType\tGLYear\tOpeningBal\tPeriod1\tPeriod2\tPeriod3\tPeriod4\tPeriod5\tPeriod6\tPeriod7\tPeriod8\tPeriod9\tPeriod10\tPeriod11\tPeriod12\tTotal Change",
   "1000\t\t\t\tCash\t\t\t\t1\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t0","4000\tN\tA\tR\tSales\tNorth\tAlpha\tRetail\t3\t2026\t0\t\t\t\t\t\t\t\t\t\t\t40\t-100.25\t-60.25",
   "5000\t\t\t\tRent\t\t\t\t4\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t0"]
> {"sql":"UPDATE GLBudget SET Amount5 = 9, Amount12 = 1"}
> {"click":"frmGLBudget.mnuImport"}
< {"waiting":{"modal":"frmImportGLBudget"}}
|  | File name must be entered
| abc | File name invalid
| {folder}/none.txt | The specified file does not exist
> {"set":"frmImportGLBudget.editFileName","value":"{1}"}
> {"click":"frmImportGLBudget.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"{2}"}],"focus":"frmImportGLBudget.editFileName","closed":[]}
|
> {"click":"frmImportGLBudget.btnBrowse"}
< {"waiting":{"dialog":{"kind":"file"}}}
> {"answer":"{folder}/budget.txt"}
> {"state":"frmImportGLBudget"}
< {"state":{"title":"Import Budget","controls":{"editFileName":{"value":"{folder}/budget.txt"},"lblStatus":{"caption":""}}}}
> {"options":{"progress":true}}
> {"click":"frmImportGLBudget.btnOK"}
< {"ok":true,"closed":["frmImportGLBudget"],"progress":[{"text":"Importing to memory"},{"text":"Importing to database"}]}
> {"sql":"SELECT GLAccountID, SubAccount1ID, SubAccount2ID, SubAccount3ID, GLYear, ActualBudget, OpeningBal, Amount5, Amount11, Amount12 FROM GLBudget"}
< {"rows":[[2,4,5,6,2026,"B",0,null,40,-100.25]]}

# Totals are a budget's file, too; columns that are missing or wrong are told with their place, and nothing is taken.
> {"sql":"INSERT INTO GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal, Amount3) VALUES (1, 2026, 'A', 10.1234, 5)"}
> {"click":"frmGLBalances.mnuRefresh"}
> {"menu":"GL > Totals"}
> {"click":"frmGLBalances.mnuExport"}
> {"answer":"{folder}/totals.txt"}
> {"click":"frmGLBudget.mnuImport"}
> {"set":"frmImportGLBudget.editFileName","value":"{folder}/totals.txt"}
> {"click":"frmImportGLBudget.btnOK"}
> {"sql":"SELECT GLAccountID, SubAccount1ID, GLYear, ActualBudget, OpeningBal, Amount3 FROM GLBudget ORDER BY GLAccountID"}
< {"rows":[[1,null,2026,"B",10.1234,5],[2,4,2026,"B",0,null]]}
> {"state":"frmGLBudget"}
< {"state":{"controls":{"grdGLBudget":{"rows":[{"cells":{"GLYear":"2026","OpeningBal":"10.123","TotalChange":"5.00"}},{},{}]}}}}
> {"click":"frmGLBudget.mnuImport"}
> {"set":"frmImportGLBudget.editFileName","value":"{folder}/wrong.txt"}
| [] | The file is empty
| ["GLAccount\tSub1\tSub2\tGLYear\n"] | Line 1: The field 'Sub3' is missing in the list of field names
| ["GLAccount\tSub1\tSub2\tSub3\tGLYear\tOpeningBal\tPeriod1\tPeriod2\tPeriod3\tPeriod4\tPeriod5\tPeriod6\tPeriod7\tPeriod8\tPeriod9\tPeriod10\tPeriod11\tPeriod12\n1000\t\t\t\t26\n"] | Line 2: GLYear '26' is not a year of 4 digits
| ["GLAccount\tSub1\tSub2\tSub3\tGLYear\tOpeningBal\tPeriod1\tPeriod2\tPeriod3\tPeriod4\tPeriod5\tPeriod6\tPeriod7\tPeriod8\tPeriod9\tPeriod10\tPeriod11\tPeriod12\n1000\t\t\t\t2028\t1\n1000\t\t\t\t2028\t1,5\n"] | Line 3: OpeningBal '1,5' is not a number with at most 4 decimals
= wrong.txt {1}
> {"click":"frmImportGLBudget.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"{2}"}],"closed":[]}
|
> {"sql":"SELECT count(*) FROM GLBudget"}
< {"rows":[[2]]}

# Unknown codes: Yes leaves out the row; No ends the import, and the rows before it stay. A row without a year is none.
= codes.txt ["PERIOD1\tPeriod2\tPeriod3\tPeriod4\tPeriod5\tPeriod6\tPeriod7\tPeriod8\tPeriod9\tPeriod10\tPeriod11\tPeriod12\tGLAccount\tSub1\tSub2\tSub3\tGLYear\tOpeningBal\r\n",
   "1\t\t\t\t\t\t\t\t\t\t\t\t77\t\t\t\t2029\r\n2\t\t\t\t\t\t\t\t\t\t\t\t1000\tx\t\t\t2029\r\n3\t\t\t\t\t\t\t\t\t\t\t\t1000\t\tn\t\t2029\r\n4\t\t\t\t\t\t\t\t\t\t\t\t1000\t\t\tx\t2029\r\n",
   "5\t\t\t\t\t\t\t\t\t\t\t\t1000\t\tA\t\t2029\r\n6\t\t\t\t\t\t\t\t\t\t\t\t88\t\t\t\t\r\n7\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t2029\r\n8\t\t\t\t\t\t\t\t\t\t\t\t1000\t\t\t\t2029\r\n"]
> {"set":"frmImportGLBudget.editFileName","value":"{folder}/codes.txt"}
> {"click":"frmImportGLBudget.btnOK"}
| Account '77'
| Subaccount 1 'x'
| Subaccount 2 'n'
| Subaccount 3 'x'
< {"waiting":{"dialog":{"kind":"warning","buttons":["Yes","No"],"text":"{1} not found.\rContinue importing budget?"}}}
> {"answer":"Yes"}
|
< {"waiting":{"dialog":{"text":"Account '' not found.\rContinue importing budget?"}}}
> {"answer":"No"}
< {"ok":true,"closed":["frmImportGLBudget"]}
> {"sql":"SELECT SubAccount2ID, Amount1 FROM GLBudget WHERE GLYear = 2029"}
< {"rows":[[5,5]]}

# A budget that somebody edits is waited for; who gives up ends the import.
= codes.txt ["GLAccount\tSub1\tSub2\tSub3\tGLYear\tOpeningBal\tPeriod1\tPeriod2\tPeriod3\tPeriod4\tPeriod5\tPeriod6\tPeriod7\tPeriod8\tPeriod9\tPeriod10\tPeriod11\tPeriod12\n5000\t\t\t\t2029\t\t50\n1000\t\t\t\t2026\t11\n"]
2> {"click":"frmGLBudget.mnuRefresh"}
2> {"grid":"frmGLBudget.grdGLBudget","do":"goto","row":0}
2> {"click":"frmGLBudget.mnuEdit"}
2> {"set":"frmGLBudgetAccount.editAmount2","value":"1"}
> {"click":"frmGLBudget.mnuImport"}
> {"set":"frmImportGLBudget.editFileName","value":"{folder}/codes.txt"}
> {"click":"frmImportGLBudget.btnOK"}
< {"waiting":{"dialog":{"buttons":["Yes","No"]}}}
> {"answer":"No"}
< {"ok":false,"messages":[],"closed":[]}
2> {"click":"frmGLBudgetAccount.btnOK"}
> {"click":"frmImportGLBudget.btnOK"}
< {"ok":true,"closed":["frmImportGLBudget"]}
> {"sql":"SELECT GLAccountID, GLYear, OpeningBal, Amount1, Amount2 FROM GLBudget WHERE GLAccountID <> 2 AND SubAccount2ID IS NULL"}
< {"rows":[[1,2026,11,null,null],[3,2029,null,50,null]]}
> {"click":"frmGLBudget.mnuImport"}
> {"click":"frmImportGLBudget.btnCancel"}
< {"closed":["frmImportGLBudget"]}
