# Without a company the main window is there, and what needs tables says so.
@ none
< {"ready":true}
> {"state":"frmQuillon"}
< {"state":{"controls":{"lblCompanyName":{"caption":""}}}}
> {"sql":"SELECT 1 A FROM Company"}
< {"ok":false,"error":{"text":"No company is open"}}
> {"quit":true,"force":true}
< {"ok":true,"focus":null}
