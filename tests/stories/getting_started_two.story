# Two people set up the same company at once: the first one to finish does, and the other hears so and sees it.
@ empty --today 2026-03-05 --country Australia --date-format MM/dd/yyyy
< {"waiting":{"modal":"frmGettingStarted"}}
> {"set":"frmGettingStarted.editCompanyName","value":"Slow Ltd"}
| 1
| 2
| 3
| 4
| 5
| 6
> {"key":"Enter"}
|
< {"focus":"frmGettingStarted.btnFinish"}
2> {"set":"frmGettingStarted.editCompanyName","value":"Quick Ltd"}
| 1
| 2
| 3
| 4
| 5
| 6
2> {"key":"Enter"}
|
2< {"focus":"frmGettingStarted.btnFinish"}
2> {"state":"frmGettingStarted"}
2< {"state":{"controls":{"lblSummary":{"caption":"Company: Quick Ltd\rFiscal year: 2026. Period 1 is July 2025, period 12 is June 2026.\rHome currency: Australian Dollar\rTax on sales: GST 10%\rChart of accounts: Trade, 51 accounts\rBank: Cheque Account\rWarning for a period before 1/26 or after 12/26\rNew documents: period 9/26, until you change it in Your Company"}}}}
2> {"click":"frmGettingStarted.btnFinish"}
2< {"messages":[],"closed":["frmGettingStarted"],"waiting":null}

> {"click":"frmGettingStarted.btnFinish"}
< {"ok":false,"messages":[{"kind":"error","text":"This company has been set up already"}],
   "waiting":{"modal":"frmGettingStarted"}}
> {"click":"frmGettingStarted.btnCancel"}
< {"closed":["frmGettingStarted"],"waiting":null}
> {"state":"frmQuillon"}
< {"state":{"controls":{"lblCompanyName":{"caption":"Quick Ltd"}}}}
> {"sql":"SELECT CompanyName, FiscalYear, DefaultPeriodYYYY, DefaultPeriodPP, DfltTax1ID, Notes FROM Company"}
< {"rows":[["Quick Ltd",2026,2026,9,1,"Period 1 is July 2025, period 12 is June 2026."]]}
> {"sql":"SELECT TaxName, TaxCode, TaxDescription, Rate, AccountName FROM Tax INNER JOIN GLAccnt ON TaxGLAccountID = GLAccountID"}
< {"rows":[["GST","G","GST",10,"GST Payable"]]}
> {"sql":"SELECT COUNT(*) N FROM GLAccnt"}
< {"rows":[[51]]}

# A voucher takes the period that was set.
> {"menu":"GL > JVs"}
> {"click":"frmJVs.mnuNew"}
> {"state":"frmJV"}
< {"state":{"controls":{"editGLPeriod":{"value":"9"},"editGLYear":{"data":2026}}}}
> {"click":"frmJV.btnCancel"}
