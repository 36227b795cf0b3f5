# A clerk keeps the chart of accounts: new accounts and subaccounts, sorting, filtering, finding, picking.
#
# Not reached by any story: the store's own words in the record-lock dialog (needs a damaged table or a failing disk),
# the words for a table that a run of another program holds locked (tests/ledger has that), and a picker's type joined to
# a filter of its caller (no screen gives one yet).
@ --today 2026-03-05 --country Canada
> {"sql":"INSERT INTO FStmt (StmtID, StmtTitle, ColumnFormat) VALUES (1, 'Income', 'Actual')"}
> {"menu":"GL > Accounts"}
< {"opened":["frmGLAccounts"]}
> {"state":"frmGLAccounts"}
< {"state":{"title":"GL Accounts","controls":{"cboSubaccount":{"value":"Main",
   "choices":["Main","Subaccount 1","Subaccount 2","Subaccount 3"]},"grdGLAccnt":{"total":0,
   "columns":[{"caption":"Account no."},{"caption":"Name"},{"caption":"Type"}]}}}}

# What a new account needs. Its number is tipped once in this run: statements are defined.
> {"click":"frmGLAccounts.mnuNew"}
< {"opened":["frmGLAccount"]}
> {"state":"frmGLAccount"}
< {"state":{"title":"New Account","cursor":"insert","focus":"frmGLAccount.editGLAccount","default":"btnOK","controls":{
   "editGLAccount":{"value":""},"chkSuspended":{"value":"No",
   "hint":"Check here to prevent further transactions from being entered"},
   "radAccountType":{"value":"","choices":["Asset","Liability","Revenue","Expense","Equity"]},
   "chkRetainedEarnings":{"visible":false},"pagPages":{"page":0,"pages":["General","Notes"]}}}}
> {"set":"frmGLAccount.pagPages","value":"Notes"}
> {"set":"frmGLAccount.editGLAccount","value":"  "}
> {"click":"frmGLAccount.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Field 'Account no.' must have a value"}],
   "focus":"frmGLAccount.editGLAccount"}
> {"set":"frmGLAccount.editGLAccount","value":"12345678901"}
< {"ok":false,"messages":[{"text":"The text is too long: at most 10 characters fit"}]}
> {"set":"frmGLAccount.editGLAccount","value":"30\u000000"}
< {"ok":false,"messages":[{"text":"The text has a character that cannot be typed here, such as a line's end"}]}
> {"set":"frmGLAccount.editGLAccount","value":" 3000 "}
> {"click":"frmGLAccount.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Field 'Account Name' must have a value"}],
   "focus":"frmGLAccount.editAccountName"}
> {"set":"frmGLAccount.editAccountName","value":"Retained Earnings"}
> {"click":"frmGLAccount.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Field 'Account Type' must have a value"}],
   "focus":"frmGLAccount.radAccountType"}
> {"set":"frmGLAccount.radAccountType","value":"Equity"}
> {"set":"frmGLAccount.chkRetainedEarnings","value":true}
> {"set":"frmGLAccount.memoNotes","value":"Closed into\nat year end"}
> {"click":"frmGLAccount.btnOK"}
< {"closed":["frmGLAccount"],"messages":[{"kind":"information","text":"Tip: Remember to update any custom financial statements for new or changed account numbers.\r\rYou can use AutoCreate to recreate statements with the latest accounts\ror you can modify more complex statements."}]}
> {"sql":"SELECT * FROM GLAccnt"}
< {"rows":[[1,"3000","Retained Earnings","Closed into\nat year end",5,true,false]]}

# The tip does not come again, the list moves to what was saved, and numbers go on behind the highest.
> {"sql":"INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (40, '1000', 'Zebra Bank', 1)"}
> {"key":"Ctrl+N"}
< {"opened":["frmGLAccount"],"messages":[]}
> {"set":"frmGLAccount.editGLAccount","value":"4000"}
> {"set":"frmGLAccount.editAccountName","value":"Sales"}
> {"set":"frmGLAccount.radAccountType","value":"Revenue"}
> {"click":"frmGLAccount.btnOK"}
< {"closed":["frmGLAccount"],"messages":[]}
> {"state":"frmGLAccounts"}
< {"state":{"controls":{"grdGLAccnt":{"total":3,"active":{"row":2},"rows":[
   {"cells":{"GLAccount":"1000","AccountName":"Zebra Bank","AccountType":"Asset"}},
   {"cells":{"GLAccount":"3000","AccountName":"Retained Earnings","AccountType":"Equity"}},
   {"cells":{"GLAccount":"4000","AccountName":"Sales","AccountType":"Revenue"},"active":true}]}}}}
> {"sql":"SELECT max(GLAccountID) FROM GLAccnt"}
< {"rows":[[41]]}
> {"click":"frmGLAccounts.mnuSortName"}
> {"state":"frmGLAccounts"}
< {"state":{"controls":{"grdGLAccnt":{"active":{"row":1},"rows":[{"cells":{"GLAccount":"3000"}},
   {"cells":{"GLAccount":"4000"},"active":true},{"cells":{"GLAccount":"1000"}}]}}}}
> {"click":"frmGLAccounts.mnuSortAccountNo"}

# Two accounts with the same number, or the same name, are none.
| editGLAccount | 3000
| editAccountName | Retained Earnings
> {"click":"frmGLAccounts.mnuEdit"}
> {"set":"frmGLAccount.{1}","value":"{2}"}
> {"key":"Enter"}
< {"ok":false,"messages":[{"kind":"error","text":"Account no. and Name must be unique"}],
   "focus":"frmGLAccount.editGLAccount"}
> {"click":"frmGLAccount.btnCancel"}
< {"closed":["frmGLAccount"],"messages":[],"waiting":null}
|

# Another type takes the retained earnings off, and closing asks.
> {"grid":"frmGLAccounts.grdGLAccnt","do":"locate","values":{"GLAccount":"3000"}}
> {"key":"Enter"}
< {"opened":["frmGLAccount"]}
> {"state":"frmGLAccount"}
< {"state":{"title":"Account","cursor":"browse","controls":{"chkRetainedEarnings":{"visible":true,"value":"Yes"}}}}
> {"set":"frmGLAccount.radAccountType","value":"Asset"}
> {"state":"frmGLAccount"}
< {"state":{"controls":{"chkRetainedEarnings":{"visible":false,"data":false}}}}
> {"close":"frmGLAccount"}
< {"waiting":{"dialog":{"kind":"confirmation","text":"Do you want to save changes?","buttons":["Yes","No","Cancel"]}}}
> {"answer":"Cancel"}
< {"ok":false,"closed":[],"finished":[{"aborted":true}]}
> {"key":"Esc"}
> {"answer":"No"}
< {"closed":["frmGLAccount"]}
> {"sql":"SELECT AccountType, RetainedEarnings FROM GLAccnt WHERE GLAccountID = 1"}
< {"rows":[[5,true]]}
> {"key":"Enter"}
> {"set":"frmGLAccount.radAccountType","value":"Asset"}
> {"close":"frmGLAccount"}
> {"answer":"Yes"}
< {"closed":["frmGLAccount"],"messages":[]}
> {"sql":"SELECT AccountType, RetainedEarnings FROM GLAccnt WHERE GLAccountID = 1"}
< {"rows":[[1,false]]}
> {"click":"frmGLAccounts.mnuNew"}
> {"close":"frmGLAccount"}
< {"closed":["frmGLAccount"],"waiting":null}

# The filter screen keeps its values; Reset clears them; every way out but OK changes nothing.
> {"click":"frmGLAccounts.mnuFilter"}
< {"waiting":{"modal":"frmGLAccountsFilter"}}
> {"state":"frmGLAccountsFilter"}
< {"state":{"title":"GL Accounts Filter","controls":{"cboAccountType":{"caption":"&Type:","value":"All"},
   "radSuspended":{"choices":["Yes","No","All"],"value":"All"}}}}
> {"set":"frmGLAccountsFilter.cboAccountType","value":"Asset"}
> {"set":"frmGLAccountsFilter.radSuspended","value":"No"}
> {"click":"frmGLAccountsFilter.btnOK"}
> {"state":"frmGLAccounts"}
< {"state":{"title":"GL Accounts (Filtered)","controls":{"grdGLAccnt":{"total":2}}}}
> {"click":"frmGLAccounts.mnuFilter"}
> {"state":"frmGLAccountsFilter"}
< {"state":{"controls":{"cboAccountType":{"value":"Asset"},"radSuspended":{"value":"No"}}}}
> {"set":"frmGLAccountsFilter.radSuspended","value":"Yes"}
> {"key":"Esc"}
> {"click":"frmGLAccounts.mnuFilter"}
> {"state":"frmGLAccountsFilter"}
< {"state":{"controls":{"radSuspended":{"value":"No"}}}}
> {"set":"frmGLAccountsFilter.radSuspended","value":"Yes"}
> {"click":"frmGLAccountsFilter.btnOK"}
> {"state":"frmGLAccounts"}
< {"state":{"title":"GL Accounts (Filtered)","controls":{"grdGLAccnt":{"total":0}}}}
> {"click":"frmGLAccounts.mnuFilter"}
> {"click":"frmGLAccountsFilter.btnReset"}
> {"click":"frmGLAccountsFilter.btnOK"}
> {"state":"frmGLAccounts"}
< {"state":{"title":"GL Accounts","controls":{"grdGLAccnt":{"total":3}}}}

# Typing in the list opens the picker, which stands on what is typed; each box sorts by its own order.
> {"type":"frmGLAccounts.grdGLAccnt","keys":"4"}
< {"waiting":{"modal":"frmGLAccountSearch"},"focus":"frmGLAccountSearch.editGLAccount"}
> {"state":"frmGLAccountSearch"}
< {"state":{"title":"Find Account","controls":{"editGLAccount":{"value":"4"},
   "grdGLAccnt":{"rows":[{},{},{"cells":{"GLAccount":"4000"},"active":true}]}}}}
> {"type":"frmGLAccountSearch.editAccountName","keys":"zEx"}
> {"key":"Backspace"}
> {"key":"Backspace"}
> {"key":"Backspace"}
> {"state":"frmGLAccountSearch"}
< {"state":{"controls":{"grdGLAccnt":{"rows":[{"cells":{"AccountName":"Retained Earnings"},"active":true},{},{}]}}}}
> {"type":"frmGLAccountSearch.editAccountName","keys":"zE"}
> {"state":"frmGLAccountSearch"}
< {"state":{"controls":{"grdGLAccnt":{"rows":[{"cells":{"AccountName":"Retained Earnings"}},
   {"cells":{"AccountName":"Sales"}},{"cells":{"AccountName":"Zebra Bank"},"active":true}]}}}}
> {"key":"Enter"}
< {"closed":["frmGLAccountSearch"]}
> {"state":"frmGLAccounts"}
< {"state":{"controls":{"grdGLAccnt":{"active":{"row":0},"rows":[{"cells":{"AccountName":"Zebra Bank"}},{},{}]}}}}
> {"key":"Ctrl+F"}
> {"click":"frmGLAccountSearch.btnCancel"}
< {"closed":["frmGLAccountSearch"]}

# A pick that the list's filter hides.
> {"click":"frmGLAccounts.mnuFilter"}
> {"set":"frmGLAccountsFilter.cboAccountType","value":"Revenue"}
> {"click":"frmGLAccountsFilter.btnOK"}
> {"key":"Ctrl+F"}
> {"set":"frmGLAccountSearch.editGLAccount","value":"1000"}
> {"click":"frmGLAccountSearch.btnOK"}
< {"messages":[{"text":"'1000' not found in list"}],"finished":[{"ok":true},{"ok":false}]}

# The picker leads to the list, which stays open for whoever has it open already, and stands where that one stood.
> {"key":"Ctrl+F"}
> {"set":"frmGLAccountSearch.cboAccountType","value":"Asset"}
> {"state":"frmGLAccountSearch"}
< {"state":{"controls":{"grdGLAccnt":{"total":2}}}}
> {"set":"frmGLAccountSearch.cboAccountType","value":"All"}
> {"click":"frmGLAccountSearch.btnGLAccounts"}
< {"waiting":{"modal":"frmGLAccounts"}}
> {"state":"frmGLAccounts"}
< {"state":{"title":"GL Accounts"}}
> {"click":"frmGLAccounts.mnuNew"}
> {"set":"frmGLAccount.editGLAccount","value":"5000"}
> {"set":"frmGLAccount.editAccountName","value":"Rent"}
> {"set":"frmGLAccount.radAccountType","value":"Expense"}
> {"click":"frmGLAccount.btnOK"}
> {"close":"frmGLAccounts"}
< {"waiting":{"modal":"frmGLAccountSearch"}}
> {"state":"frmGLAccountSearch"}
< {"state":{"controls":{"grdGLAccnt":{"rows":[{},{},{},{"cells":{"GLAccount":"5000"},"active":true}]}}}}
> {"grid":"frmGLAccountSearch.grdGLAccnt","do":"up"}
> {"key":"Enter"}
> {"state":"frmGLAccounts"}
< {"state":{"controls":{"grdGLAccnt":{"rows":[{},{},{"cells":{"GLAccount":"4000"},"active":true},{}]}}}}
> {"screens":true}
< {"screens":[{},{"name":"frmGLAccounts","active":true,"modal":false}]}

# Subaccounts: three lists of their own in the same grid.
> {"click":"frmGLAccounts.btnSubaccounts"}
< {"messages":[{"kind":"information",
   "text":"\"Customizable subaccount titles\" may be added in a future version."}]}
> {"set":"frmGLAccounts.cboSubaccount","value":"Subaccount 2"}
> {"state":"frmGLAccounts"}
< {"state":{"title":"GL Accounts","controls":{"grdGLAccnt":{"total":0,
   "columns":[{"caption":"Account no."},{"caption":"Name"}]}}}}
| Print | Subaccounts Print
| Filter | Subaccounts Filter
| Find | Subaccounts Find
| History | GL History filtered by selected subaccount
| Totals | GL Totals filtered by selected subaccount
| Budget | GL Budget filtered by selected subaccount
> {"click":"frmGLAccounts.mnu{1}"}
< {"messages":[{"kind":"information","text":"\"{2}\" may be added in a future version."}],"waiting":null}
|
> {"click":"frmGLAccounts.mnuNew"}
> {"state":"frmGLAccountSub"}
< {"state":{"title":"New Subaccount"}}
> {"click":"frmGLAccountSub.btnOK"}
< {"ok":false,"messages":[{"text":"Field 'Subaccount no.' must have a value"}],"focus":"frmGLAccountSub.editSubAccount"}
> {"set":"frmGLAccountSub.editSubAccount","value":"N"}
> {"click":"frmGLAccountSub.btnOK"}
< {"ok":false,"messages":[{"text":"Field 'Subaccount Name' must have a value"}],
   "focus":"frmGLAccountSub.editSubAccountName"}
> {"set":"frmGLAccountSub.editSubAccountName","value":"North"}
> {"click":"frmGLAccountSub.btnOK"}
> {"click":"frmGLAccounts.mnuNew"}
> {"set":"frmGLAccountSub.editSubAccount","value":"A"}
> {"set":"frmGLAccountSub.editSubAccountName","value":"North"}
> {"click":"frmGLAccountSub.btnOK"}
< {"ok":false,"messages":[{"text":"Subaccount no. and Name must be unique"}],"focus":"frmGLAccountSub.editSubAccount"}
> {"set":"frmGLAccountSub.editSubAccountName","value":"South"}
> {"click":"frmGLAccountSub.btnOK"}
> {"state":"frmGLAccounts"}
< {"state":{"controls":{"grdGLAccnt":{"rows":[{"cells":{"SubAccount":"A","SubAccountName":"South"},"active":true},
   {"cells":{"SubAccount":"N"}}]}}}}
> {"grid":"frmGLAccounts.grdGLAccnt","do":"locate","values":{"SubAccount":"A"}}
> {"key":"Enter"}
> {"state":"frmGLAccountSub"}
< {"state":{"title":"Subaccount","controls":{"editSubAccount":{"value":"A"}}}}
> {"key":"Esc"}
> {"click":"frmGLAccounts.mnuSortName"}
> {"state":"frmGLAccounts"}
< {"state":{"controls":{"grdGLAccnt":{"rows":[{"cells":{"SubAccount":"N"}},{"cells":{"SubAccount":"A"}}]}}}}
> {"sql":"SELECT SubAccountID, SubAccount FROM GLAcSub2"}
< {"rows":[[1,"N"],[2,"A"]]}
> {"set":"frmGLAccounts.cboSubaccount","value":"Main"}
> {"state":"frmGLAccounts"}
< {"state":{"controls":{"grdGLAccnt":{"total":4}}}}

# A line of a voucher picks its account and subaccount; a subaccount that is not used is none.
> {"open":"TfrmJVs"}
> {"click":"frmJVs.mnuNew"}
> {"click":"frmJV.btnNew"}
> {"key":"F2"}
< {"waiting":{"modal":"frmGLAccountSearch"},"focus":"frmGLAccountSearch.editGLAccount"}
> {"state":"frmGLAccountSearch"}
< {"state":{"title":"GL Account","controls":{"grdGLAccnt":{"rows":[{"active":true},{},{},{}]}}}}
> {"click":"frmGLAccountSearch.btnOK"}
> {"set":"frmJV.grdJVDet[0].SubAccount2","value":"N"}
> {"key":"F2"}
< {"waiting":{"modal":"frmGLAccountSubSearch"}}
> {"state":"frmGLAccountSubSearch"}
< {"state":{"title":"GL Subaccount 2","controls":{"btnGLSubaccounts":{"hint":"Add or edit subaccounts"},
   "chkSubUsed":{"data":true,"hint":"Checked = subaccount used. Unchecked = no subaccount."},
   "grdGLAcSub":{"rows":[{"cells":{"SubAccount":"A"}},{"cells":{"SubAccount":"N"},"active":true}]}}}}
> {"click":"frmGLAccountSubSearch.btnGLSubaccounts"}
> {"state":"frmGLAccounts"}
< {"state":{"controls":{"cboSubaccount":{"value":"Subaccount 2"},
   "grdGLAccnt":{"rows":[{"cells":{"SubAccount":"N"},"active":true},{"cells":{"SubAccount":"A"}}]}}}}
> {"grid":"frmGLAccounts.grdGLAccnt","do":"down"}
> {"close":"frmGLAccounts"}
> {"state":"frmGLAccountSubSearch"}
< {"state":{"controls":{"grdGLAcSub":{"rows":[{"cells":{"SubAccount":"A"},"active":true},{}]}}}}

# The list that a picker led to was turned to another level: its row there says nothing here.
> {"click":"frmGLAccountSubSearch.btnGLSubaccounts"}
> {"set":"frmGLAccounts.cboSubaccount","value":"Main"}
> {"close":"frmGLAccounts"}
> {"state":"frmGLAccountSubSearch"}
< {"state":{"controls":{"grdGLAcSub":{"rows":[{"cells":{"SubAccount":"A"},"active":true},{}]}}}}
> {"type":"frmGLAccountSubSearch.editSubAccountName","keys":"no"}
> {"click":"frmGLAccountSubSearch.btnOK"}
> {"state":"frmJV"}
< {"state":{"controls":{"grdJVDet":{"rows":[{"cells":{"GLAccount":"1000","SubAccount2":"N"}}]}}}}
> {"key":"F2"}
> {"set":"frmGLAccountSubSearch.chkSubUsed","value":false}
> {"click":"frmGLAccountSubSearch.btnOK"}
> {"state":"frmJV"}
< {"state":{"controls":{"grdJVDet":{"rows":[{"cells":{"GLAccount":"1000","SubAccount2":""}}]}}}}

# A key that was deleted lands on the first row.
> {"set":"frmJV.grdJVDet[0].SubAccount2","value":"N"}
> {"sql":"DELETE FROM GLAcSub2 WHERE SubAccount = 'N'"}
> {"key":"F2"}
> {"state":"frmGLAccountSubSearch"}
< {"state":{"controls":{"grdGLAcSub":{"rows":[{"cells":{"SubAccount":"A"},"active":true}]}}}}
> {"key":"Esc"}
> {"key":"Esc"}
> {"close":"frmJV"}
