# A clerk keeps currencies and banks: what they must have, what keeps them from being deleted.
@ --today 2026-03-05 --country Canada
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType, Suspended) VALUES (1, '1000', 'Cash', 1, false)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType, Suspended) VALUES (2, '2000', 'Payables', 2, true)
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType, Suspended) VALUES (3, '1200', 'Receivables', 1, false)
> {"sql":"INSERT INTO {1}"}
|
> {"menu":"General > Currencies"}
< {"opened":["frmCurrencies"]}
> {"state":"frmCurrencies"}
< {"state":{"title":"Currencies","controls":{"grdCurrency":{"total":0,"columns":[{"caption":"Currency Name"},
   {"caption":"Exchange Rate"}]}},"menus":[{"path":"&Edit > &New"},{"path":"&Edit > &Edit"},{"path":"&Edit > &Delete"},
   {"path":"&Edit > &Refresh"},{"path":"&View > &Print..."}]}}
| mnuEdit
| mnuDelete
> {"click":"frmCurrencies.{1}"}
< {"ok":false,"messages":[],"opened":[],"waiting":null}
|

# What a currency must have, one after the other.
> {"key":"Ctrl+N"}
< {"opened":["frmCurrency"]}
> {"state":"frmCurrency"}
< {"state":{"title":"New Currency","cursor":"insert","focus":"frmCurrency.editCurrencyName","default":"btnOK","controls":{
   "pagPages":{"page":0,"pages":["General","Exch. Rates"]},"editGainLossExchangeGLAccnt":{"caption":"Gain/Loss on Exchange:"},
   "editAPGLAccount":{"caption":"Accounts Payable:"},"editAPDiscGLAccount":{"caption":"AP Discounts:"},
   "editARGLAccount":{"caption":"Accounts Receivable:"},"editARDiscGLAccount":{"caption":"AR Discounts:"},
   "editDfltWriteOffGLAccount":{"caption":"Default AR Write-offs:"},"editExchangeRateLY1":{"caption":"Period 1:"},
   "editExchangeRateTY12":{"caption":"Period 12:"}}}}
| Field 'Currency Name' must have a value | editCurrencyName | Home
| Field 'AP Account' must have a value | editAPGLAccount | 2000
| Field 'AR Account' must have a value | editARGLAccount | 1200
| Field 'AP Discounts GL Account' must have a value | editAPDiscGLAccount | 1000
| Field 'AR Discounts GL Account' must have a value | editARDiscGLAccount | 1000
> {"click":"frmCurrency.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"{1}"}],"focus":"frmCurrency.{2}"}
> {"set":"frmCurrency.{2}","value":"{3}"}
|
> {"set":"frmCurrency.editAPGLAccount","value":"9"}
< {"ok":false,"messages":[{"kind":"error","text":"GL Account not found"}]}
> {"key":"Esc"}
> {"state":"frmCurrency"}
< {"state":{"controls":{"editAPGLAccount":{"value":"2000"},"lblAPGLAccount":{"caption":"Payables"}}}}
# No rate, and a rate of nothing, need no account for what is left over.
> {"set":"frmCurrency.editExchangeRate","value":"0"}
> {"click":"frmCurrency.btnOK"}
< {"ok":true,"closed":["frmCurrency"],"messages":[]}
> {"sql":"SELECT CurrencyID, CurrencyName, ExchangeRate, APGLAccountID, ARGLAccountID, APDiscGLAccountID, ARDiscGLAccountID FROM Currency"}
< {"rows":[[1,"Home",0,2,3,1,1]]}

# A rate needs it. Names are unique, case apart.
> {"click":"frmCurrencies.mnuEdit"}
> {"state":"frmCurrency"}
< {"state":{"title":"Currency","cursor":"browse"}}
| General | editExchangeRate | -1.25 | Exchange Rate cannot be negative
| General | editExchangeRate | 1e400 | '1e400' is not a valid number
| Exch. Rates | editExchangeRateLY1 | -0.001 | Exchange Rate cannot be negative
| Exch. Rates | editExchangeRateTY12 | -2 | Exchange Rate cannot be negative
> {"set":"frmCurrency.pagPages","value":"{1}"}
> {"set":"frmCurrency.{2}","value":"{3}"}
< {"ok":false,"messages":[{"kind":"error","text":"{4}"}],"focus":"frmCurrency.{2}"}
> {"key":"Esc"}
|
> {"set":"frmCurrency.pagPages","value":"General"}
> {"set":"frmCurrency.editExchangeRate","value":"1.3333"}
> {"click":"frmCurrency.btnOK"}
< {"ok":false,"messages":[{"text":"Field 'Gain/Loss Exchange Account' must have a value if rate is entered"}],
   "focus":"frmCurrency.editGainLossExchangeGLAccnt"}
> {"set":"frmCurrency.editGainLossExchangeGLAccnt","value":"1000"}
> {"set":"frmCurrency.pagPages","value":"Exch. Rates"}
> {"set":"frmCurrency.editExchangeRateLY12","value":"1.25"}
> {"set":"frmCurrency.editExchangeRateTY1","value":"1.3"}
> {"click":"frmCurrency.btnOK"}
< {"ok":true}
> {"sql":"SELECT ExchangeRate, ExchangeRateLY12, ExchangeRateTY1, GainLossExchangeGLAccntID FROM Currency"}
< {"rows":[[1.3333,1.25,1.3,1]]}
> {"sql":"INSERT INTO Currency (CurrencyID, CurrencyName, APGLAccountID, APDiscGLAccountID, ARGLAccountID, ARDiscGLAccountID) VALUES (7, 'Dollar', 2, 1, 3, 1)"}
> {"click":"frmCurrencies.mnuEdit"}
> {"set":"frmCurrency.editCurrencyName","value":"DOLLAR "}
> {"click":"frmCurrency.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Currency Name must be unique"}],"focus":"frmCurrency.editCurrencyName"}
> {"click":"frmCurrency.btnCancel"}
< {"closed":["frmCurrency"],"waiting":null}

# An account that somebody deletes meanwhile.
| GainLossExchangeGLAccntID | editGainLossExchangeGLAccnt
| APGLAccountID | editAPGLAccount
| APDiscGLAccountID | editAPDiscGLAccount
| ARGLAccountID | editARGLAccount
| ARDiscGLAccountID | editARDiscGLAccount
| DfltWriteOffGLAccountID | editDfltWriteOffGLAccount
> {"sql":"INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (9, '9', 'Gone', 1)"}
> {"click":"frmCurrencies.mnuEdit"}
> {"set":"frmCurrency.{2}","value":"9"}
> {"sql":"DELETE FROM GLAccnt WHERE GLAccountID = 9"}
> {"click":"frmCurrency.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"GL Account no longer exists"}],"focus":"frmCurrency.{2}"}
> {"close":"frmCurrency"}
< {"waiting":{"dialog":{"text":"Do you want to save changes?"}}}
> {"answer":"No"}
|

# A bank begins with the currency of the company.
> {"menu":"General > Banks"}
< {"opened":["frmBanks"]}
> {"state":"frmBanks"}
< {"state":{"title":"Banks","menus":[{"path":"&Edit > &New"},{"path":"&Edit > &Edit"},{"path":"&Edit > &Delete"},
   {"path":"&Edit > &Refresh"},{"path":"&View > Bank &Book","enabled":true},
   {"path":"&View > Bank &Reconciliation","enabled":true},{"path":"&View > &Print..."}]}}
> {"click":"frmBanks.mnuNew"}
> {"state":"frmBank"}
< {"state":{"title":"New Bank","focus":"frmBank.editBankName","controls":{
   "cboCurrency":{"value":"","choices":["","Dollar","Home"]},"editBankGLAccount":{"value":""}}}}
> {"click":"frmBank.btnCancel"}
> {"sql":"UPDATE Company SET DefaultCurrencyID = 7"}
> {"click":"frmBanks.mnuNew"}
> {"state":"frmBank"}
< {"state":{"controls":{"cboCurrency":{"value":"Dollar","data":7}}}}
> {"set":"frmBank.cboCurrency","value":""}
| Field 'Bank Name' must have a value | editBankName | Main
| Field 'Currency' must have a value | cboCurrency | Home
| Field 'Bank GL Account' must have a value | editBankGLAccount | 1000
> {"click":"frmBank.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"{1}"}],"focus":"frmBank.{2}"}
> {"set":"frmBank.{2}","value":"{3}"}
|
> {"set":"frmBank.editBankGLAccount","value":"9"}
< {"ok":false,"messages":[{"kind":"error","text":"GL Account not found"}]}
> {"key":"Esc"}
> {"click":"frmBank.btnOK"}
< {"ok":true,"closed":["frmBank"]}
> {"sql":"SELECT * FROM Bank"}
< {"rows":[[1,"Main",1,1]]}
> {"state":"frmBanks"}
< {"state":{"controls":{"grdBank":{"rows":[{"cells":{"BankName":"Main","BankGLAccount":"1000","Currency":"Home"}}]}}}}
> {"click":"frmBanks.mnuNew"}
> {"set":"frmBank.editBankName","value":"main"}
> {"set":"frmBank.editBankGLAccount","value":"1200"}
> {"click":"frmBank.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Bank Name must be unique"}],"focus":"frmBank.editBankName"}
> {"set":"frmBank.editBankName","value":"Other"}
> {"sql":"DELETE FROM Currency WHERE CurrencyID = 7"}
> {"click":"frmBank.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Currency no longer exists"}],"focus":"frmBank.cboCurrency"}
> {"set":"frmBank.cboCurrency","value":"Home"}
> {"sql":"DELETE FROM GLAccnt WHERE GLAccountID = 3"}
> {"click":"frmBank.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"GL Account no longer exists"}],"focus":"frmBank.editBankGLAccount"}
> {"click":"frmBank.btnCancel"}

# From the first payment on the currency stays, and so does the bank.
> {"sql":"INSERT INTO Currency (CurrencyID, CurrencyName, APGLAccountID, APDiscGLAccountID, ARGLAccountID, ARDiscGLAccountID) VALUES (7, 'Dollar', 2, 1, 1, 1)"}
> {"sql":"INSERT INTO APCheq (ChequeID, BankID) VALUES (1, 1)"}
> {"click":"frmBanks.mnuEdit"}
> {"state":"frmBank"}
< {"state":{"title":"Bank"}}
> {"set":"frmBank.cboCurrency","value":"Dollar"}
> {"click":"frmBank.btnOK"}
< {"ok":false,"messages":[{"kind":"error","text":"Currency cannot be changed... \rAP payment(s) already exist"}],"focus":"frmBank.cboCurrency"}
> {"set":"frmBank.cboCurrency","value":"Home"}
> {"set":"frmBank.editBankName","value":"Main Street"}
> {"click":"frmBank.btnOK"}
< {"ok":true}
> {"sql":"INSERT INTO ARPmt (PaymentID, BankID) VALUES (1, 1)"}
> {"sql":"INSERT INTO ARInv (ARInvoiceID, POSPmtBankID) VALUES (1, 1)"}
| APCheq | AP payment(s) exist for this bank
| ARPmt | AR payment(s) exist for this bank
| ARInv | AR invoice(s) exist for this bank. (POS payment).
> {"click":"frmBanks.mnuDelete"}
< {"waiting":{"dialog":{"kind":"confirmation","text":"Delete 'Main Street'?","buttons":["Yes","No"]}}}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"kind":"error","text":"Unable to delete 'Main Street'...\r{2}"}]}
> {"sql":"DELETE FROM {1}"}
|

# A currency stays while anybody has it.
> {"sql":"INSERT INTO Vendor (VendorID, VendorNo, VendorName, CurrencyID) VALUES (1, 'V', 'V', 1)"}
> {"sql":"INSERT INTO Customer (CustomerID, CustomerNo, CustomerName, CurrencyID) VALUES (1, 'C', 'C', 1)"}
> {"open":"TfrmCurrencies"}
> {"grid":"frmCurrencies.grdCurrency","do":"locate","values":{"CurrencyID":1}}
| Bank | Bank(s) exist for this currency
| Vendor | Vendor(s) exist for this currency
| Customer | Customer(s) exist for this currency
> {"click":"frmCurrencies.mnuDelete"}
< {"waiting":{"dialog":{"kind":"confirmation","text":"Delete 'Home'?","buttons":["Yes","No"]}}}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"kind":"error","text":"Unable to delete 'Home'...\r{2}"}]}
> {"sql":"UPDATE {1} SET CurrencyID = 7"}
|
> {"click":"frmCurrencies.mnuDelete"}
> {"answer":"No"}
< {"ok":false,"messages":[],"finished":[{"aborted":true}]}
> {"click":"frmCurrencies.mnuDelete"}
> {"answer":"Yes"}
< {"ok":true,"messages":[]}
> {"sql":"SELECT CurrencyID FROM Currency"}
< {"rows":[[7]]}
> {"click":"frmBanks.mnuDelete"}
> {"answer":"Yes"}
< {"ok":true,"messages":[]}
> {"sql":"SELECT count(*) FROM Bank"}
< {"rows":[[0]]}

# Somebody else has the currency open.
> {"sql":"DELETE FROM Vendor"}
> {"sql":"DELETE FROM Customer"}
2> {"open":"TfrmCurrencies"}
2> {"click":"frmCurrencies.mnuEdit"}
2> {"set":"frmCurrency.editExchangeRate","value":"2"}
> {"click":"frmCurrencies.mnuDelete"}
> {"answer":"Yes"}
< {"waiting":{"dialog":{"kind":"warning","text":"The 'tblCurrency' record you are trying to edit or delete is currently locked. Do you want to try again?\r\rThis would happen if the record (customer, invoice, etc.) is currently being edited by another person or process."}}}
> {"answer":"No"}
< {"ok":false,"messages":[],"finished":[{"aborted":true}]}
