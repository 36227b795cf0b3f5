"""Balance sheet, income statement and trial balance as an accountant works them out on paper.

`accounts`: by number, each with its name and type. `ledger`: of each account the amounts by (year, period), debits
positive; period 0 is the opening. A statement is a list of lines, each its heading and its figures.
"""
import decimal

BALANCE, INCOME = "Balance Sheet", "Income Statement"
FIXED = {"Equip", "AccDep"}  # assets that are not current
VARIANCE = None  # the two figures before it, the first less the second


def spans(style, year, first, last):
    """What each column adds up: from and to."""
    def years(back):
        return ((year - back, 0), (year - back, first)), ((year - back, first), (year - back, last)), \
               ((year - back, 1), (year - back, last))

    balance, change, to_date = years(0)
    old_balance, old_change, old_to_date = years(1)
    before = (year, first - 1) if first > 1 else (year - 1, 12)
    return {"Balance: Simple": [balance],
            "Balance: Compare year": [balance, old_balance, VARIANCE],
            "Net Change: Simple": [change, to_date],
            "Net Change: Compare period": [change, (before, before), VARIANCE, to_date],
            "Net Change: Compare year": [change, old_change, VARIANCE, to_date, old_to_date, VARIANCE]}[style]


def statement(title, style, accounts, ledger, year, first, last):
    columns = spans(style, year, first, last)

    def line(heading, members, sign):
        figures = []
        for span in columns:
            if span is VARIANCE:
                figures.append(figures[-2] - figures[-1])
                continue
            figures.append(sum((sign * amount for account in members for period, amount in ledger.get(account, {}).items()
                                if span[0] <= period <= span[1]), decimal.Decimal()))
        return heading, figures

    def of(*types):
        return [account for account in sorted(accounts) if accounts[account]["type"] in types]

    def each(kind, sign):
        return [line(accounts[account]["name"], [account], sign) for account in of(kind)]

    if title == INCOME:
        return [("Revenue", []), *each("income", -1), line("Total Revenue", of("income"), -1),
                ("Expenses", []), *each("expense", 1), line("Total Expenses", of("expense"), 1),
                line("Net Income", of("income", "expense"), -1)]
    return [("ASSETS", []), *each("asset", 1), line("Total Assets", of("asset"), 1),
            ("LIABILITIES & EQUITY", []), ("Liabilities", []), *each("liability", -1),
            line("Total Liabilities", of("liability"), -1),
            ("Equity", []), line("Retained Earnings Current Year", of("income", "expense"), -1), *each("equity", -1),
            line("Total Equity", of("equity", "income", "expense"), -1),
            line("Total Liabilities & Equity", of("liability", "equity", "income", "expense"), -1)]


def trial_balance(ledger, year, period):
    """Of each account that has one its balance, debits positive, and the sums of debits and of credits."""
    balances = {account: sum(amount for at, amount in amounts.items() if (year, 0) <= at <= (year, period))
                for account, amounts in ledger.items()}
    balances = {account: balance for account, balance in balances.items() if balance}
    return balances, (sum(b for b in balances.values() if b > 0), -sum(b for b in balances.values() if b < 0))


def carried_forward(accounts, ledger, year, retained):
    """The ledger when the year was closed: the next one opens with its balances, and with its result in `retained`."""
    new = {account: dict(amounts) for account, amounts in ledger.items()}
    for account, amounts in ledger.items():
        result = accounts[account]["type"] in ("income", "expense")
        opening = new.setdefault(retained if result else account, {})
        opening[year + 1, 0] = opening.get((year + 1, 0), 0) + sum(a for at, a in amounts.items() if at[0] == year)
    return new


def figures(accounts, printed, sides):
    """What is published beside the accounts, out of what was printed: the last columns of both statements, and the sums
    of the trial balance."""
    balance, income = ({heading: amounts[-1] for heading, amounts in printed[title] if amounts}
                       for title in (BALANCE, INCOME))

    def of(lines, *types):
        return [(a, lines[row["name"]]) for a, row in accounts.items() if row["type"] in types]

    columns = [amount for _, amount in of(income, "expense")] + [-amount for _, amount in of(income, "income")]
    return {"debit_total": [sides[0]], "credit_total": [sides[1]],
            "net_income": [income["Net Income"], balance["Retained Earnings Current Year"]],
            "total_expenses": [income["Total Expenses"]], "total_assets": [balance["Total Assets"]],
            "balance_sheet_total": [balance["Total Assets"], balance["Total Liabilities & Equity"]],
            "current_assets": [sum(amount for account, amount in of(balance, "asset") if account not in FIXED)],
            "income_statement_debit_column": [sum(amount for amount in columns if amount > 0)],
            "income_statement_credit_column": [-sum(amount for amount in columns if amount < 0)]}
