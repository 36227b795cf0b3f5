# Two programs at the ledger: who posts or unposts waits for whoever is there, or gives up, and nothing is done twice.
@ --today 2026-03-05 --country Canada
| GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (1, '1000', 'Cash', 1)
| JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, JVAmount, Posted) VALUES (1, 2026, 3, 1001, 'GL', 'JV', '2026-03-01', 5, false)
| JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (1, 1, 1, 5)
| JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (1, 2, 1, -5)
> {"sql":"INSERT INTO {1}"}
|
> {"menu":"GL > JVs"}
2> {"menu":"GL > JVs"}

# A voucher that is being edited elsewhere: Retry, then Cancel, which ends the run with the store's words.
2> {"click":"frmJVs.mnuEdit"}
2> {"set":"frmJV.editTransDescription","value":"mine"}
> {"click":"frmJVs.mnuPost"}
> {"click":"frmJVsPost.btnOK"}
< {"waiting":{"dialog":{"kind":"error","buttons":["Retry","Cancel"],"default":"Retry","text":"Unable to lock JVs table... this table is being updated by another job."}}}
> {"answer":"Retry"}
< {"waiting":{"dialog":{"kind":"error"}}}
> {"answer":"Cancel"}
< {"ok":false,"closed":["frmJVsPost"],"finished":[{"command":"frmJVsPost.btnOK","ok":false,"error":{"code":10258}},{"command":"frmJVs.mnuPost","ok":true}]}
> {"sql":"SELECT Posted FROM JV"}
< {"rows":[[false]]}

# What the other saves while the dialog stands is posted as it is then.
> {"click":"frmJVs.mnuPost"}
> {"click":"frmJVsPost.btnOK"}
2> {"click":"frmJV.btnOK"}
> {"answer":"Retry"}
< {"ok":true,"waiting":null}
> {"sql":"SELECT TransDescription, Amount FROM GLHist"}
< {"rows":[["mine",5],["mine",-5]]}

# A second run elsewhere has nothing left; a dialog that stands open posts nothing twice.
> {"sql":"INSERT INTO JV (JVID, GLYear, GLPeriod, JVNumber, Source, TransType, TransDate, Posted) VALUES (2, 2026, 3, 1002, 'GL', 'JV', '2026-03-01', false)"}
> {"sql":"INSERT INTO JVDet (JVID, Seq, GLAccountID, GLAmount) VALUES (2, 1, 1, 7)"}
> {"click":"frmJVs.mnuPost"}
2> {"click":"frmJVs.mnuPost"}
2> {"click":"frmJVsPost.btnOK"}
> {"click":"frmJVsPost.btnOK"}
< {"ok":true,"messages":[]}
> {"sql":"SELECT Amount3 FROM GLActual"}
< {"rows":[[7]]}

# Unposted from two screens, the second is told and changes nothing.
> {"click":"frmJVs.mnuRefresh"}
2> {"click":"frmJVs.mnuRefresh"}
> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1001}}
2> {"grid":"frmJVs.grdJV","do":"locate","values":{"JVNumber":1001}}
> {"click":"frmJVs.mnuEdit"}
2> {"click":"frmJVs.mnuEdit"}
> {"click":"frmJV.btnUnpost"}
2> {"click":"frmJV.btnUnpost"}
> {"answer":"Yes"}
2> {"answer":"Yes"}
2< {"ok":false,"messages":[{"kind":"error","text":"JV has already been unposted by another user."}],"closed":[]}
2> {"state":"frmJV"}
2< {"state":{"controls":{"lblPosted":{"visible":false}}}}
2> {"sql":"SELECT Amount3 FROM GLActual"}
2< {"rows":[[7]]}

# While the other edits what was unposted, who still sees it posted waits for the voucher, and not for the totals.
> {"close":"frmJV"}
> {"click":"frmJVs.mnuPost"}
2> {"close":"frmJV"}
> {"click":"frmJVsPost.btnOK"}
> {"click":"frmJVs.mnuEdit"}
2> {"click":"frmJVs.mnuRefresh"}
2> {"click":"frmJVs.mnuEdit"}
2> {"click":"frmJV.btnUnpost"}
2> {"answer":"Yes"}
2> {"set":"frmJV.editTransDescription","value":"again"}
> {"click":"frmJV.btnUnpost"}
> {"answer":"Yes"}
< {"waiting":{"dialog":{"kind":"warning","buttons":["Yes","No"],"text":"The 'tblJV' record you are trying to edit or delete is currently locked. Do you want to try again?\r\rThis would happen if the record (customer, invoice, etc.) is currently being edited by another person or process."}}}
> {"answer":"No"}
< {"ok":false,"messages":[],"finished":[{"aborted":true}]}
> {"close":"frmJV"}

# A voucher that was unposted and deleted meanwhile is closed.
2> {"close":"frmJV"}
2> {"answer":"No"}
> {"click":"frmJVs.mnuPost"}
> {"click":"frmJVsPost.btnOK"}
> {"click":"frmJVs.mnuEdit"}
2> {"click":"frmJVs.mnuRefresh"}
2> {"click":"frmJVs.mnuEdit"}
2> {"click":"frmJV.btnUnpost"}
2> {"answer":"Yes"}
2> {"close":"frmJV"}
2> {"click":"frmJVs.mnuDelete"}
2> {"answer":"Yes"}
> {"click":"frmJV.btnUnpost"}
> {"answer":"Yes"}
< {"ok":false,"messages":[{"text":"This record has been deleted by another user"}],"closed":["frmJV"]}
