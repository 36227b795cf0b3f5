# Financial statements are made, edited and checked: the lines, the accounts of a detail line and the totals that it goes
# into, what saving asks for, AutoCreate, what Cancel puts back, and what validation tells.
#
# Words that no story can hear:
# - "This report (with Auto-Forex) is already running.\rMultiple instances are not allowed": while a report is laid out
#   nothing but its own preview can be used.
# - "There is no statement 9 (any more)": between the choice of a statement and its figures nobody is asked.
@ --today 2026-03-05 --country Canada --printer letter
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (2, '2000', 'Accounts Payable', 2)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (3, '3000', 'Capital', 5)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (4, '4000', 'Sales', 3)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (5, '5000', 'Rent', 4)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (6, '4500', 'Interest earned on all of the accounts at banks', 3)
| GLAcSub1 (SubAccountID, SubAccount, SubAccountName) VALUES (1, 'East', 'Eastern')
| GLAcSub1 (SubAccountID, SubAccount, SubAccountName, Suspended) VALUES (2, 'OLD', 'Closed', true)
> {"sql":"INSERT INTO {1}"}
|
> {"menu":"GL > Reports"}
> {"set":"frmGLReports.lboReports","value":"Custom Financial Statements"}
> {"click":"frmGLReports.btnNext"}
> {"click":"frmGLReports.btnNew"}
< {"opened":["frmFinancialStmt"],"focus":"frmFinancialStmt.editStmtTitle"}
> {"state":"frmFinancialStmt"}
< {"state":{"title":"New Financial Statement","cursor":"insert","default":"btnOK","controls":{
   "editStmtTitle":{"value":""},"cboColumnFormat":{"value":"","choices":["Net Change: Simple","Net Change: Compare period",
   "Net Change: Compare year","Net Change: Compare budget","Balance: Simple","Balance: Compare year",
   "Balance: Compare budget"]},
   "grdFStmtLin":{"total":0,"columns":[{"caption":"Heading"},{"caption":"Type"}]},
   "grdFStmtLAc":{"readOnly":true,"columns":[{"caption":"From Account"},{"caption":"To Account"},{"caption":"Sub1"},
   {"caption":"Sub2"},{"caption":"Sub3"},{"caption":"Name","readOnly":true}]},
   "grdFStmtLTo":{"readOnly":true,"columns":[{"caption":"Total"}]},"memoNotes":{},
   "btnUp":{"caption":"&Up"},"btnDown":{"caption":"Do&wn"},"btnAutoCreate":{"caption":"&AutoCreate"}}}}
> {"sql":"SELECT NextStmtID FROM FStmtCtl"}
< {"rows":[[2]]}

# What saving asks for.
> {"click":"frmFinancialStmt.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Field 'Title' must have a value"}],"focus":"frmFinancialStmt.editStmtTitle"}
> {"set":"frmFinancialStmt.editStmtTitle","value":"our BALANCE"}
> {"click":"frmFinancialStmt.btnOK"}
< {"ok":false,"messages":[{"text":"Field 'Column format' must have a value"}],"focus":"frmFinancialStmt.cboColumnFormat"}
> {"set":"frmFinancialStmt.cboColumnFormat","value":"Net Change: Compare month"}
< {"ok":false,"messages":[{"kind":"error","text":"Choose an item from the list"}]}
> {"key":"Esc"}
| our BALANCE | Net Change: Compare year | Format should be 'Balance' for a balance sheet
| Income, ours | Balance: Simple | Format should be 'Net Change' for an income statement
| profit of ours | Balance: Compare budget | Format should be 'Net Change' for an income statement
> {"set":"frmFinancialStmt.editStmtTitle","value":"{1}"}
> {"set":"frmFinancialStmt.cboColumnFormat","value":"{2}"}
> {"click":"frmFinancialStmt.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"{3}"}],"focus":"frmFinancialStmt.cboColumnFormat"}
|
> {"set":"frmFinancialStmt.editStmtTitle","value":"Ours"}
> {"set":"frmFinancialStmt.cboColumnFormat","value":"Balance: Simple"}

# Lines: their types, and that only details have accounts and totals.
> {"click":"frmFinancialStmt.btnNew"}
< {"focus":"frmFinancialStmt.grdFStmtLin[0].LineHeading"}
> {"set":"frmFinancialStmt.grdFStmtLin[0].LineHeading","value":"Money"}
> {"set":"frmFinancialStmt.grdFStmtLin[0].LineType","value":"Detail Assets"}
< {"ok":false,"messages":[{"kind":"error","text":"Choose an item from the list"}]}
> {"key":"Esc"}
| 1 | All | Total
| 2 | Half | Total Li Eq
| 3 | ASSETS | Heading
> {"click":"frmFinancialStmt.btnNew"}
> {"set":"frmFinancialStmt.grdFStmtLin[{1}].LineHeading","value":"{2}"}
> {"set":"frmFinancialStmt.grdFStmtLin[{1}].LineType","value":"{3}"}
> {"state":"frmFinancialStmt"}
< {"state":{"controls":{"grdFStmtLAc":{"readOnly":true},"btnNewAccount":{"enabled":false},"btnNewTotal":{"enabled":false}}}}
> {"set":"frmFinancialStmt.grdFStmtLAc[0].AccountFrom","value":"1000"}
< {"ok":false}
|
> {"grid":"frmFinancialStmt.grdFStmtLin","do":"goto","row":0}
> {"click":"frmFinancialStmt.btnNewAccount"}
< {"focus":"frmFinancialStmt.grdFStmtLAc[0].AccountFrom"}
> {"set":"frmFinancialStmt.grdFStmtLAc[0].AccountTo","value":"1999"}
> {"click":"frmFinancialStmt.btnNewAccount"}
< {"ok":false,"messages":[{"text":"Field 'From Account' must have a value...\rMake changes or press Esc to undo"}],
   "focus":"frmFinancialStmt.grdFStmtLAc[0].AccountFrom"}
> {"set":"frmFinancialStmt.grdFStmtLAc[0].AccountFrom","value":"1000"}
# Both ends may be picked, too; a number that no account has is typed as well.
> {"key":"F2"}
< {"waiting":{"modal":"frmGLAccountSearch"}}
> {"state":"frmGLAccountSearch"}
< {"state":{"controls":{"grdGLAccnt":{"rows":[{"cells":{"GLAccount":"1000"},"active":true},"..."]}}}}
> {"grid":"frmGLAccountSearch.grdGLAccnt","do":"locate","values":{"GLAccount":"3000"}}
> {"click":"frmGLAccountSearch.btnOK"}
< {"focus":"frmFinancialStmt.grdFStmtLAc[0].AccountFrom"}
> {"state":"frmFinancialStmt"}
< {"state":{"controls":{"grdFStmtLAc":{"rows":[{"cells":{"AccountFrom":"3000","AccountTo":"1999","Name":"Capital"}}]}}}}
> {"key":"F2"}
> {"click":"frmGLAccountSearch.btnCancel"}
> {"set":"frmFinancialStmt.grdFStmtLAc[0].AccountFrom","value":"1000"}
> {"type":"frmFinancialStmt.grdFStmtLAc[0].AccountTo","keys":"45"}
> {"key":"F2"}
> {"click":"frmGLAccountSearch.btnOK"}
> {"state":"frmFinancialStmt"}
< {"state":{"controls":{"grdFStmtLAc":{"rows":[{"cells":{"AccountFrom":"1000","AccountTo":"4500"}}]}}}}
> {"set":"frmFinancialStmt.grdFStmtLAc[0].AccountTo","value":"1999"}
> {"set":"frmFinancialStmt.grdFStmtLAc[0].SubAccount1","value":"West"}
< {"ok":false,"messages":[{"text":"Subaccount not found...\rSelect a different subaccount or press Esc to undo"}]}
> {"key":"Esc"}
> {"set":"frmFinancialStmt.grdFStmtLAc[0].SubAccount1","value":"east"}
> {"click":"frmFinancialStmt.btnNewAccount"}
> {"set":"frmFinancialStmt.grdFStmtLAc[1].AccountFrom","value":"1000"}
> {"grid":"frmFinancialStmt.grdFStmtLAc","do":"goto","row":0}
< {"ok":false,"messages":[{"text":"'From Account' has already been specified...\rEnter a different account number or press Esc to undo"}],
   "focus":"frmFinancialStmt.grdFStmtLAc[1].AccountFrom"}
> {"set":"frmFinancialStmt.grdFStmtLAc[1].AccountFrom","value":"3000"}
> {"click":"frmFinancialStmt.btnNewTotal"}
< {"focus":"frmFinancialStmt.grdFStmtLTo[0].TotalLineSeq"}
> {"state":"frmFinancialStmt"}
< {"state":{"controls":{"grdFStmtLAc":{"total":2,"rows":[
   {"cells":{"AccountFrom":"1000","AccountTo":"1999","SubAccount1":"East","SubAccount2":"","Name":"Cash"}},
   {"cells":{"AccountFrom":"3000","AccountTo":"","SubAccount1":"","Name":"Capital"}}]}}}}
> {"set":"frmFinancialStmt.grdFStmtLTo[0].TotalLineSeq","value":"ASSETS"}
< {"ok":false,"messages":[{"text":"Choose an item from the list"}]}
> {"key":"Esc"}
> {"set":"frmFinancialStmt.grdFStmtLTo[0].TotalLineSeq","value":"all"}
> {"set":"frmFinancialStmt.grdFStmtLTo[0].TotalLineSeq","value":""}
> {"click":"frmFinancialStmt.btnOK"}
< {"ok":false,"messages":[{"text":"Field 'Total' must have a value...\rMake changes or press Esc to undo"}]}
> {"set":"frmFinancialStmt.grdFStmtLTo[0].TotalLineSeq","value":"All"}
> {"click":"frmFinancialStmt.btnNewTotal"}
> {"set":"frmFinancialStmt.grdFStmtLTo[1].TotalLineSeq","value":"All"}
> {"click":"frmFinancialStmt.btnOK"}
< {"ok":false,"messages":[{"text":"'Total' has already been specified"}],"focus":"frmFinancialStmt.grdFStmtLTo[1].TotalLineSeq"}
> {"set":"frmFinancialStmt.grdFStmtLTo[1].TotalLineSeq","value":"Half"}
| Heading
| Total Revenue
> {"set":"frmFinancialStmt.grdFStmtLin[0].LineType","value":"{1}"}
< {"ok":false,"messages":[{"text":"To change a detail line to a heading or total you must first delete the Detail Line Properties (accounts and totals)."}]}
> {"key":"Esc"}
|
> {"set":"frmFinancialStmt.grdFStmtLin[0].LineType","value":"Detail Li Eq"}
> {"set":"frmFinancialStmt.grdFStmtLin[0].LineType","value":""}
> {"grid":"frmFinancialStmt.grdFStmtLin","do":"goto","row":1}
< {"ok":false,"messages":[{"text":"Field 'Type' must have a value...\rMake changes or press Esc to undo"}]}
> {"set":"frmFinancialStmt.grdFStmtLin[0].LineType","value":"Detail"}

# Up and Down change the order of print; at the ends nothing happens.
| 3 | Up | [["Money",1],["All",2],["ASSETS",4],["Half",3]]
| 2 | Up | [["Money",1],["ASSETS",4],["All",2],["Half",3]]
| 1 | Up | [["ASSETS",4],["Money",1],["All",2],["Half",3]]
| 0 | Up | [["ASSETS",4],["Money",1],["All",2],["Half",3]]
| 2 | Down | [["ASSETS",4],["Money",1],["Half",3],["All",2]]
| 3 | Down | [["ASSETS",4],["Money",1],["Half",3],["All",2]]
> {"grid":"frmFinancialStmt.grdFStmtLin","do":"goto","row":{1}}
> {"click":"frmFinancialStmt.btn{2}"}
> {"sql":"SELECT LineHeading, Seq FROM FStmtLin WHERE StmtID = 1 ORDER BY LineNo"}
< {"rows":{3}}
|
# The line stays the active one.
| Up | 2
| Up | 1
| Down | 2
| Down | 3
> {"click":"frmFinancialStmt.btn{1}"}
> {"state":"frmFinancialStmt"}
< {"state":{"controls":{"grdFStmtLin":{"active":{"row":{2}}}}}}
|
> {"set":"frmFinancialStmt.memoNotes","value":"For the bank"}
> {"click":"frmFinancialStmt.btnOK"}
< {"closed":["frmFinancialStmt"],"messages":[]}
> {"sql":"SELECT StmtID, Notes FROM FStmt"}
< {"rows":[[1,"For the bank"]]}
> {"state":"frmGLReports"}
< {"state":{"controls":{"grdFStmt":{"rows":[{"cells":{"StmtTitle":"Ours","ColumnFormat":"Balance: Simple"}}]}}}}

# A line takes its accounts and totals with it, a total its members; Cancel puts all of it back, also after AutoCreate.
> {"click":"frmGLReports.btnEdit"}
> {"state":"frmFinancialStmt"}
< {"state":{"title":"Financial Statement","cursor":"browse"}}
> {"grid":"frmFinancialStmt.grdFStmtLin","do":"goto","row":2}
> {"click":"frmFinancialStmt.btnDelete"}
> {"sql":"SELECT Seq, TotalLineSeq FROM FStmtLTo"}
< {"rows":[[1,2]]}
> {"grid":"frmFinancialStmt.grdFStmtLin","do":"goto","row":1}
> {"click":"frmFinancialStmt.btnDeleteTotal"}
> {"click":"frmFinancialStmt.btnDeleteAccount"}
> {"sql":"SELECT AccountFrom FROM FStmtLAc"}
< {"rows":[["3000"]]}
> {"click":"frmFinancialStmt.btnDelete"}
> {"sql":"SELECT COUNT(*) FROM FStmtLAc"}
< {"rows":[[0]]}
> {"click":"frmFinancialStmt.btnAutoCreate"}
< {"waiting":{"dialog":{"kind":"confirmation","text":"AutoCreate will replace previous statement lines.","buttons":["Yes","No"]}}}
> {"answer":"No"}
> {"sql":"SELECT LineHeading FROM FStmtLin ORDER BY LineNo"}
< {"rows":[["ASSETS"],["All"]]}
> {"click":"frmFinancialStmt.btnAutoCreate"}
> {"answer":"Yes"}
< {"waiting":{"modal":"frmFinancialStmtAuto"}}
> {"state":"frmFinancialStmtAuto"}
< {"state":{"title":"AutoCreate Financial Statement","controls":{"radStatementType":{"caption":"Statement Type",
   "value":"Balance Sheet","choices":["Balance Sheet","Income Statement"]}}}}
> {"click":"frmFinancialStmtAuto.btnCancel"}
> {"sql":"SELECT LineHeading FROM FStmtLin ORDER BY LineNo"}
< {"rows":[["ASSETS"],["All"]]}
> {"click":"frmFinancialStmt.btnAutoCreate"}
> {"answer":"Yes"}
> {"set":"frmFinancialStmtAuto.radStatementType","value":"Income Statement"}
> {"click":"frmFinancialStmtAuto.btnOK"}
> {"state":"frmFinancialStmt"}
< {"state":{"controls":{"editStmtTitle":{"value":"Ours"},"cboColumnFormat":{"value":"Net Change: Simple"},
   "grdFStmtLin":{"rows":[{"cells":{"LineHeading":"Revenue","LineType":"Heading"}},{"cells":{"LineHeading":"Sales","LineType":"Detail Revenue"}},
   {"cells":{"LineHeading":"Interest earned on all of the accounts a","LineType":"Detail Revenue"}},{"cells":{"LineHeading":"Total Revenue","LineType":"Total Revenue"}},
   {"cells":{"LineHeading":"Expenses","LineType":"Heading"}},{"cells":{"LineHeading":"Rent","LineType":"Detail"}},{"cells":{"LineHeading":"Total Expenses","LineType":"Total"}},
   {"cells":{"LineHeading":"Net Income","LineType":"Total Revenue"}}]}}}}
> {"sql":"SELECT Seq, LineNo, AccountFrom, AccountTo FROM FStmtLin L INNER JOIN FStmtLAc A ON A.StmtID = L.StmtID AND A.Seq = L.Seq ORDER BY Seq"}
< {"rows":[[2,2,"4000",null],[3,3,"4500",null],[6,6,"5000",null]]}
> {"sql":"SELECT TotalLineSeq, Seq FROM FStmtLTo ORDER BY TotalLineSeq, Seq"}
< {"rows":[[4,2],[4,3],[7,6],[8,2],[8,3],[8,6]]}
> {"click":"frmFinancialStmt.btnCancel"}
> {"sql":"SELECT LineHeading, Seq, LineType FROM FStmtLin ORDER BY LineNo"}
< {"rows":[["ASSETS",4,"Heading"],["Money",1,"Detail"],["Half",3,"Total Li Eq"],["All",2,"Total"]]}
> {"sql":"SELECT AccountFrom, AccountTo, SubAccount1ID FROM FStmtLAc"}
< {"rows":[["1000","1999",1],["3000",null,null]]}
> {"sql":"SELECT Seq, TotalLineSeq FROM FStmtLTo ORDER BY SeqEntered"}
< {"rows":[[1,2],[1,3]]}
> {"sql":"SELECT StmtTitle, ColumnFormat FROM FStmt"}
< {"rows":[["Ours","Balance: Simple"]]}

# AutoCreate of a balance sheet, by its title; a format of its kind stays.
> {"click":"frmGLReports.btnNew"}
> {"set":"frmFinancialStmt.editStmtTitle","value":"My balances"}
> {"set":"frmFinancialStmt.cboColumnFormat","value":"Balance: Compare budget"}
> {"click":"frmFinancialStmt.btnAutoCreate"}
> {"answer":"Yes"}
> {"click":"frmFinancialStmt.btnOK"}
> {"sql":"SELECT Seq, LineHeading, LineType FROM FStmtLin WHERE StmtID = 2 ORDER BY LineNo"}
< {"rows":[[1,"ASSETS","Heading"],[2,"Cash","Detail"],[3,"Total Assets","Total"],[4,"LIABILITIES & EQUITY","Heading"],
   [5,"Liabilities","Heading"],[6,"Accounts Payable","Detail Li Eq"],[7,"Total Liabilities","Total Li Eq"],
   [8,"Equity","Heading"],[9,"Retained Earnings Current Year","Detail Li Eq"],[10,"Capital","Detail Li Eq"],
   [11,"Total Equity","Total Li Eq"],[12,"Total Liabilities & Equity","Total Li Eq"]]}
> {"sql":"SELECT AccountFrom FROM FStmtLAc WHERE StmtID = 2 AND Seq = 9"}
< {"rows":[["4000"],["4500"],["5000"]]}
> {"sql":"SELECT TotalLineSeq, Seq FROM FStmtLTo WHERE StmtID = 2 ORDER BY TotalLineSeq, Seq"}
< {"rows":[[3,2],[7,6],[11,9],[11,10],[12,6],[12,9],[12,10]]}
> {"sql":"SELECT StmtTitle, ColumnFormat FROM FStmt WHERE StmtID = 2"}
< {"rows":[["My balances","Balance: Compare budget"]]}

# Without a title it gets that of its kind; a new one that is cancelled leaves nothing but its number spent.
> {"click":"frmGLReports.btnNew"}
> {"click":"frmFinancialStmt.btnAutoCreate"}
> {"answer":"Yes"}
> {"click":"frmFinancialStmtAuto.btnOK"}
> {"state":"frmFinancialStmt"}
< {"state":{"controls":{"editStmtTitle":{"value":"Balance Sheet"},"cboColumnFormat":{"value":"Balance: Simple"}}}}
> {"close":"frmFinancialStmt"}
< {"waiting":{"dialog":{"text":"Do you want to save changes?"}}}
> {"answer":"No"}
< {"closed":["frmFinancialStmt"]}
| FStmt
| FStmtLin
| FStmtLAc
| FStmtLTo
> {"sql":"SELECT COUNT(*) FROM {1} WHERE StmtID = 3"}
< {"rows":[[0]]}
|
> {"sql":"SELECT NextStmtID FROM FStmtCtl"}
< {"rows":[[4]]}

# A statement that another deleted, and a format of older days.
> {"sql":"INSERT INTO FStmt (StmtID, StmtTitle, ColumnFormat) VALUES (9, 'A', 'Net Change: Compare month')"}
> {"grid":"frmGLReports.grdFStmt","do":"goto","row":0}
> {"click":"frmGLReports.btnEdit"}
> {"state":"frmFinancialStmt"}
< {"state":{"controls":{"cboColumnFormat":{"value":"Net Change: Compare month"}}}}
> {"click":"frmFinancialStmt.btnCancel"}

# Only one person at a time changes a statement, its lines as well.
> {"click":"frmGLReports.btnEdit"}
> {"click":"frmFinancialStmt.btnNew"}
2> {"menu":"GL > Reports"}
2> {"set":"frmGLReports.lboReports","value":"Custom Financial Statements"}
2> {"click":"frmGLReports.btnNext"}
2> {"grid":"frmGLReports.grdFStmt","do":"locate","values":{"StmtID":9}}
2> {"click":"frmGLReports.btnDelete"}
2< {"waiting":{"dialog":{"kind":"confirmation","text":"Delete 'A'?"}}}
2> {"answer":"Yes"}
2< {"waiting":{"dialog":{"kind":"warning","text":"The 'tblFStmt' record you are trying to edit or delete is currently locked. Do you want to try again?\r\rThis would happen if the record (customer, invoice, etc.) is currently being edited by another person or process."}}}
2> {"answer":"No"}
2< {"ok":false,"messages":[]}
2> {"click":"frmGLReports.btnEdit"}
2> {"click":"frmFinancialStmt.btnAutoCreate"}
2> {"answer":"Yes"}
2> {"click":"frmFinancialStmtAuto.btnOK"}
2< {"waiting":{"dialog":{"kind":"warning","text":"The 'tblFStmt' record you are trying to edit or delete is currently locked. Do you want to try again?\r\rThis would happen if the record (customer, invoice, etc.) is currently being edited by another person or process."}}}
2> {"answer":"No"}
2< {"ok":false,"messages":[]}
2> {"click":"frmFinancialStmt.btnCancel"}
> {"click":"frmFinancialStmt.btnCancel"}

# A line that another changed is neither moved nor deleted before it is seen: its neighbour and its accounts stay, too.
2> {"grid":"frmGLReports.grdFStmt","do":"locate","values":{"StmtID":1}}
> {"grid":"frmGLReports.grdFStmt","do":"locate","values":{"StmtID":1}}
| Down
| Delete
> {"click":"frmGLReports.btnEdit"}
2> {"click":"frmGLReports.btnEdit"}
2> {"grid":"frmFinancialStmt.grdFStmtLin","do":"goto","row":1}
> {"set":"frmFinancialStmt.grdFStmtLin[1].LineHeading","value":"Until {1}"}
> {"click":"frmFinancialStmt.btnOK"}
2> {"click":"frmFinancialStmt.btn{1}"}
2< {"ok":false,"messages":[{"kind":"warning","text":"A record you are trying to edit or delete on 'tblFStmtLin' has been changed or deleted since last retrieved.\rData will now be refreshed."}]}
2> {"click":"frmFinancialStmt.btnOK"}
> {"sql":"SELECT L.LineHeading, L.LineNo, A.AccountFrom FROM FStmtLin L LEFT JOIN FStmtLAc A ON A.StmtID = L.StmtID AND A.Seq = L.Seq WHERE L.StmtID = 1 ORDER BY L.LineNo, A.AccountFrom"}
< {"rows":[["ASSETS",1,null],["Until {1}",2,"1000"],["Until {1}",2,"3000"],["Half",3,null],["All",4,null]]}
|
> {"grid":"frmGLReports.grdFStmt","do":"locate","values":{"StmtID":9}}
2> {"sql":"DELETE FROM FStmt WHERE StmtID = 9"}
> {"click":"frmGLReports.btnEdit"}
< {"messages":[{"text":"This record has been deleted by another user"}]}

# Validation lists what is not right and is asked for before printing; a statement that passes prints without a word.
| FStmt (StmtID, StmtTitle, ColumnFormat) VALUES (10, 'Checked', 'Balance: Simple')
| FStmtLin (StmtID, Seq, LineNo, LineHeading, LineType) VALUES (10, 1, 1, 'Some', 'Detail')
| FStmtLin (StmtID, Seq, LineNo, LineHeading, LineType) VALUES (10, 2, 2, 'More', 'Detail')
| FStmtLAc (StmtID, Seq, AccountFrom, AccountTo) VALUES (10, 1, '2000', '4000')
| FStmtLAc (StmtID, Seq, AccountFrom, SubAccount1ID) VALUES (10, 2, '3000', 1)
| FStmtLAc (StmtID, Seq, AccountFrom, AccountTo) VALUES (10, 2, '45', '5')
> {"sql":"INSERT INTO {1}"}
|
> {"grid":"frmGLReports.grdFStmt","do":"locate","values":{"StmtID":10}}
> {"click":"frmGLReports.btnNext"}
> {"set":"frmGLReports.editGLPeriod","value":"3"}
> {"set":"frmGLReports.editGLYear","value":"26"}
> {"set":"frmGLReports.chkValidate","value":true}
> {"click":"frmGLReports.btnNext"}
< {"waiting":{"modal":"frmFStmtValidation"}}
> {"state":"frmFStmtValidation"}
< {"state":{"title":"Financial Statement Validation: Checked","controls":{
   "grdMissing":{"columns":[{"caption":"Account no."},{"caption":"Name"},{"caption":"Type"}],"rows":[
   {"cells":{"GLAccount":"1000","AccountName":"Cash","AccountType":"Asset"}},
   {"cells":{"GLAccount":"5000","AccountName":"Rent","AccountType":"Expense"}}]},
   "grdRepeated":{"rows":[{"cells":{"GLAccount":"3000","AccountName":"Capital","AccountType":"Equity"}}]},
   "grdWrongType":{"total":0}}}}
> {"click":"frmFStmtValidation.btnCancel"}
< {"messages":[],"opened":[],"closed":["frmFStmtValidation"],"finished":[{},{"command":"frmGLReports.btnNext","aborted":true}]}
> {"sql":"UPDATE FStmt SET ColumnFormat = 'Net Change: Simple' WHERE StmtID = 10"}
> {"click":"frmGLReports.btnNext"}
> {"state":"frmFStmtValidation"}
< {"state":{"controls":{
   "grdMissing":{"rows":[{"cells":{"GLAccount":"5000"}}]},"grdRepeated":{"rows":[{"cells":{"GLAccount":"3000"}}]},
   "grdWrongType":{"rows":[{"cells":{"GLAccount":"2000","AccountType":"Liability"}},
   {"cells":{"GLAccount":"3000","AccountName":"Capital","AccountType":"Equity"}}]}}}}
> {"click":"frmFStmtValidation.btnOK"}
< {"opened":["frmPreview"]}
> {"close":"frmPreview"}
> {"sql":"DELETE FROM FStmtLAc WHERE StmtID = 10"}
> {"sql":"INSERT INTO FStmtLAc (StmtID, Seq, AccountFrom, AccountTo) VALUES (10, 1, '4000', '5000')"}
> {"click":"frmGLReports.btnNext"}
< {"messages":[],"opened":["frmPreview"],"waiting":null}
> {"close":"frmPreview"}

# The list: what others made is there when its page is turned to, or refreshed; a statement goes with all that it has.
2> {"sql":"INSERT INTO FStmt (StmtID, StmtTitle, ColumnFormat) VALUES (20, 'A brought one', 'Balance: Simple')"}
2> {"sql":"INSERT INTO FStmtLin (StmtID, Seq, LineNo, LineHeading, LineType) VALUES (20, 1, 1, 'Theirs', 'Detail')"}
> {"click":"frmGLReports.btnBack"}
> {"state":"frmGLReports"}
< {"state":{"controls":{"grdFStmt":{"rows":[{"cells":{"StmtTitle":"A brought one"}},"..."]}}}}
> {"key":"F5"}
> {"grid":"frmGLReports.grdFStmt","do":"locate","values":{"StmtID":1}}
> {"click":"frmGLReports.btnDelete"}
> {"answer":"Yes"}
> {"sql":"SELECT StmtID FROM FStmt WHERE StmtID = 1 UNION SELECT StmtID FROM FStmtLin WHERE StmtID = 1 UNION SELECT StmtID FROM FStmtLAc WHERE StmtID = 1 UNION SELECT StmtID FROM FStmtLTo WHERE StmtID = 1"}
< {"rows":[]}

# A new one takes no number that is in use, though the counter stands behind, and so none of the other's lines.
> {"key":"Ctrl+N"}
< {"opened":["frmFinancialStmt"]}
> {"state":"frmFinancialStmt"}
< {"state":{"controls":{"grdFStmtLin":{"total":0}}}}
> {"click":"frmFinancialStmt.btnCancel"}
> {"sql":"SELECT NextStmtID, LineHeading FROM FStmtCtl, FStmtLin WHERE StmtID = 20"}
< {"rows":[[22,"Theirs"]]}

# Without a statement there is nothing to edit or delete, and nothing to go on with.
> {"sql":"DELETE FROM FStmt"}
> {"key":"F5"}
| Edit
| Delete
> {"click":"frmGLReports.btn{1}"}
< {"ok":false,"messages":[],"waiting":null}
|
> {"click":"frmGLReports.btnNext"}
< {"ok":false,"messages":[{"text":"A statement must be chosen"}]}
