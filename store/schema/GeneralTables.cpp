#include "store/schema/TableSpecs.h"

// The company's identity and settings, its users, its currencies and its logo.
namespace quillon::store::schema {
namespace {

using enum FieldType;

// One row: the company's name, address, settings, period limits and default accounts.
constexpr FieldSpec kCompanyFields[] = {
    {"CompanyNo", smallint},
    {"CompanyName", string, 40},
    {"FiscalYear", smallint},
    {"DefaultPeriodYYYY", smallint},
    {"DefaultPeriodPP", smallint},
    {"WPeriodFromYYYY", smallint},
    {"WPeriodFromPP", smallint},
    {"WPeriodToYYYY", smallint},
    {"WPeriodToPP", smallint},
    {"EPeriodFromYYYY", smallint},
    {"EPeriodFromPP", smallint},
    {"EPeriodToYYYY", smallint},
    {"EPeriodToPP", smallint},
    {"DefaultCurrencyID", integer},
    {"Notes", memo},
    {"APInvPONumbers", boolean},
    {"APInvDescriptions", boolean},
    {"DfltSalesGLAccountID", integer},
    {"DfltCOGSGLAccountID", integer},
    {"DfltInventoryGLAccountID", integer},
    {"DfltPriceListID", integer},
    {"AddressLine1", string, 50},
    {"AddressLine2", string, 50},
    {"AddressLine3", string, 35},
    {"Phone", string, 20},
    {"TaxNo", string, 35},
    {"ARInvoiceMessage", memo},
    {"ARInvoiceStyle", smallint},
    {"ARInvoiceCopies", smallint},
    {"ApplicationVersion", string, 8},
    {"BackupOnExit", smallint},
    {"EmailHost", string, 40},
    {"EmailUserID", string, 30},
    {"EmailPassword", string, 20},
    {"EmailFromName", string, 40},
    {"EmailFromAddress", string, 40},
    {"EmailCCAddress", string, 80},
    {"EmailBCCAddress", string, 80},
    {"DfltTax1ID", integer},
    {"DfltTax2ID", integer},
};
constexpr IndexSpec kCompanyIndexes[] = {
    primary("CompanyNo"),
};

// One row a user: login name, password and the 56 rights.
constexpr FieldSpec kUsersFields[] = {
    {"UserName", string, 30},     {"Password", string, 30},
    {"Security", boolean},        {"YourCompany", boolean},
    {"Banks", boolean},           {"BankBook", boolean},
    {"BankRec", boolean},         {"Currencies", boolean},
    {"PackRepair", boolean},      {"Import", boolean},
    {"Purge", boolean},           {"Vendors", boolean},
    {"APInvoices", boolean},      {"APCheques", boolean},
    {"VendorTypes", boolean},     {"APReports", boolean},
    {"Customers", boolean},       {"ARInvoices", boolean},
    {"ARPayments", boolean},      {"Salesmen", boolean},
    {"CustomerTypes", boolean},   {"Items", boolean},
    {"PriceLists", boolean},      {"Prices", boolean},
    {"Taxes", boolean},           {"ARReports", boolean},
    {"GLAccounts", boolean},      {"JVs", boolean},
    {"GLBudget", boolean},        {"GLBalances", boolean},
    {"GLHistory", boolean},       {"GLReports", boolean},
    {"ItemTypes", boolean},       {"ItemSubtypes", boolean},
    {"Warehouses", boolean},      {"PhysicalCount", boolean},
    {"InvAdjustments", boolean},  {"Lots", boolean},
    {"InvTotals", boolean},       {"InvHistory", boolean},
    {"InvReports", boolean},      {"SalesHistory", boolean},
    {"SalesReports", boolean},    {"SalesCharts", boolean},
    {"SalesOrders", boolean},     {"Shipments", boolean},
    {"Carriers", boolean},        {"SOReports", boolean},
    {"PurchaseOrders", boolean},  {"InvReceipts", boolean},
    {"POReports", boolean},       {"VendorItems", boolean},
    {"PurchaseHistory", boolean}, {"PurchasesReports", boolean},
    {"MfgOrders", boolean},       {"MfgReceipts", boolean},
    {"Resources", boolean},       {"MfgReports", boolean},
};
constexpr IndexSpec kUsersIndexes[] = {
    primary("UserName"),
};

// Currencies: the exchange rate of now and of each period of last and this year, and the accounts of their business.
constexpr FieldSpec kCurrencyFields[] = {
    {"CurrencyID", integer},
    {"CurrencyName", string, 20, kRequired},
    {"ExchangeRate", floating},
    {"GainLossExchangeGLAccntID", integer},
    {"APGLAccountID", integer, 0, kRequired},
    {"APDiscGLAccountID", integer, 0, kRequired},
    {"ARGLAccountID", integer, 0, kRequired},
    {"ARDiscGLAccountID", integer, 0, kRequired},
    {"DfltWriteOffGLAccountID", integer},
    {"ExchangeRateLY1", floating},
    {"ExchangeRateLY2", floating},
    {"ExchangeRateLY3", floating},
    {"ExchangeRateLY4", floating},
    {"ExchangeRateLY5", floating},
    {"ExchangeRateLY6", floating},
    {"ExchangeRateLY7", floating},
    {"ExchangeRateLY8", floating},
    {"ExchangeRateLY9", floating},
    {"ExchangeRateLY10", floating},
    {"ExchangeRateLY11", floating},
    {"ExchangeRateLY12", floating},
    {"ExchangeRateTY1", floating},
    {"ExchangeRateTY2", floating},
    {"ExchangeRateTY3", floating},
    {"ExchangeRateTY4", floating},
    {"ExchangeRateTY5", floating},
    {"ExchangeRateTY6", floating},
    {"ExchangeRateTY7", floating},
    {"ExchangeRateTY8", floating},
    {"ExchangeRateTY9", floating},
    {"ExchangeRateTY10", floating},
    {"ExchangeRateTY11", floating},
    {"ExchangeRateTY12", floating},
};
constexpr IndexSpec kCurrencyIndexes[] = {
    primary("CurrencyID"),
    {"CurrencyName1", "CurrencyName", kUniqueNoCase},
    plain("DfltWriteOffGLAccountID"),
    plain("ARDiscGLAccountID"),
    plain("ARGLAccountID"),
    plain("APDiscGLAccountID"),
    plain("APGLAccountID"),
    plain("GainLossExchangeGLAccntID"),
};

// One row: the company's logo picture.
constexpr FieldSpec kLogoFields[] = {
    {"Logo", graphic},
};

constexpr TableSpec kTables[] = {
    {"Company", kCompanyFields, kCompanyIndexes},
    {"Users", kUsersFields, kUsersIndexes},
    {"Currency", kCurrencyFields, kCurrencyIndexes},
    {"Logo", kLogoFields, {}},
};

}  // namespace

std::span<const TableSpec> generalTables() { return kTables; }

}  // namespace quillon::store::schema
