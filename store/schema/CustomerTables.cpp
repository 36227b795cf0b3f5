#include "store/schema/TableSpecs.h"

// Customers and what defines them, taxes and price lists, carriers.
namespace quillon::store::schema {
namespace {

using enum FieldType;

// Customers.
constexpr FieldSpec kCustomerFields[] = {
    {"CustomerID", integer},
    {"CustomerNo", string, 10},
    {"CustomerName", string, 40},
    {"AddressLine1", string, 35},
    {"AddressLine2", string, 35},
    {"City", string, 35},
    {"StateProv", string, 20},
    {"ZipCode", string, 10},
    {"Country", string, 20},
    {"Contact", string, 40},
    {"Phone", string, 20},
    {"Fax", string, 20},
    {"EMail", string, 40},
    {"WebPage", string, 30},
    {"Tax1ID", integer},
    {"Tax2ID", integer},
    {"Tax1ExemptionNo", string, 13},
    {"Tax2ExemptionNo", string, 13},
    {"TaxNo", string, 12},
    {"CurrencyID", integer},
    {"CreditLimit", currency},
    {"DiscPC", floating},
    {"DiscDays", smallint},
    {"NetDays", smallint},
    {"COD", boolean},
    {"Prepayment", boolean},
    {"TermsText", string, 40},
    {"Suspended", boolean},
    {"PrintStatement", boolean},
    {"AllowBackorders", boolean},
    {"SalesmanID", integer},
    {"CustomerTypeID", integer},
    {"PriceListID", integer},
    {"CustomerMessage", memo},
    {"Notes", memo},
};
constexpr IndexSpec kCustomerIndexes[] = {
    primary("CustomerID"),
    {"CustomerNo", "CustomerNo", kUniqueNoCase},
    {"CustomerName1", "CustomerName", kNoCase},
    {"CustomerNameZip", "CustomerName;ZipCode", kNoCase},
    plain("CustomerTypeID"),
    plain("PriceListID"),
    plain("SalesmanID"),
    plain("CurrencyID"),
};

// Control row of customer numbering.
constexpr FieldSpec kCustCtlFields[] = {
    {"NextCustomerNo", integer},
    {"NextCustomerID", integer},
};

// Customer types.
constexpr FieldSpec kCusTypeFields[] = {
    {"CustomerTypeID", integer},
    {"TypeName", string, 40},
};
constexpr IndexSpec kCusTypeIndexes[] = {
    primary("CustomerTypeID"),
    {"TypeName1", "TypeName", kUniqueNoCase},
};

// Balance of a customer.
constexpr FieldSpec kCBalanceFields[] = {
    {"CustomerID", integer},
    {"Balance", currency},
};
constexpr IndexSpec kCBalanceIndexes[] = {
    primary("CustomerID"),
};

// Contacts of a customer.
constexpr FieldSpec kCContactFields[] = {
    {"CustomerID", integer},
    {"ContactID", autoInc},
    {"LastName", string, 30},
    {"FirstName", string, 30},
    {"JobTitle", string, 40},
    {"BusinessPhone", string, 20},
    {"BusinessPhoneExt", string, 10},
    {"BusinessPhone2", string, 20},
    {"BusinessPhone2Ext", string, 10},
    {"HomePhone", string, 20},
    {"Fax", string, 20},
    {"Cellular", string, 20},
    {"Pager", string, 20},
    {"EMail", string, 40},
    {"Notes", memo},
};
constexpr IndexSpec kCContactIndexes[] = {
    primary("CustomerID;ContactID"),
    {"FullName", "LastName;FirstName", kNoCase},
    {"CustomerIDFullName", "CustomerID;LastName;FirstName", kNoCase},
};

// Ship-to addresses of a customer.
constexpr FieldSpec kShiptoFields[] = {
    {"ShiptoID", integer},
    {"CustomerID", integer},
    {"ShipToName", string, 40},
    {"ShipToAddressLine1", string, 35},
    {"ShipToAddressLine2", string, 35},
    {"ShipToAddressLine3", string, 35},
    {"ShipToCity", string, 35},
    {"ShipToStateProv", string, 20},
    {"ShipToZipCode", string, 10},
    {"ShipToCountry", string, 20},
    {"DefaultShipto", boolean},
};
constexpr IndexSpec kShiptoIndexes[] = {
    primary("ShiptoID"),
    plain("CustomerID"),
    {"CustomerIDShipToName", "CustomerID;ShipToName", kNoCase},
};

// Salesmen.
constexpr FieldSpec kSalesmanFields[] = {
    {"SalesmanID", integer},        {"LastName", string, 30},
    {"FirstName", string, 30},      {"JobTitle", string, 40},
    {"BusinessPhone", string, 20},  {"BusinessPhoneExt", string, 10},
    {"BusinessPhone2", string, 20}, {"BusinessPhone2Ext", string, 10},
    {"HomePhone", string, 20},      {"Fax", string, 20},
    {"Cellular", string, 20},       {"Pager", string, 20},
    {"EMail", string, 40},          {"Notes", memo},
};
constexpr IndexSpec kSalesmanIndexes[] = {
    primary("SalesmanID"),
    {"FullName", "LastName;FirstName", kUniqueNoCase},
};

// Tax rates and their accounts.
constexpr FieldSpec kTaxFields[] = {
    {"TaxID", integer},
    {"TaxName", string, 20, kRequired},
    {"Rate", floating, 0, kRequired},
    {"TaxCode", string, 1, kRequired},
    {"TaxDescription", string, 20, kRequired},
    {"TaxGLAccountID", integer, 0, kRequired},
};
constexpr IndexSpec kTaxIndexes[] = {
    primary("TaxID"),
    {"TaxName1", "TaxName", kUniqueNoCase},
    plain("TaxGLAccountID"),
};

// Price lists.
constexpr FieldSpec kPriceLstFields[] = {
    {"PriceListID", integer},
    {"PriceListName", string, 30},
};
constexpr IndexSpec kPriceLstIndexes[] = {
    primary("PriceListID"),
    {"PriceListName1", "PriceListName", kUniqueNoCase},
};

// Price of an item on a list.
constexpr FieldSpec kPriceFields[] = {
    {"PriceListID", integer},
    {"ItemID", integer},
    {"UnitPrice", currency},
};
constexpr IndexSpec kPriceIndexes[] = {
    primary("PriceListID;ItemID"),
    plain("ItemID"),
};

// Carriers.
constexpr FieldSpec kCarrierFields[] = {
    {"CarrierID", integer},
    {"CarrierName", string, 20},
};
constexpr IndexSpec kCarrierIndexes[] = {
    primary("CarrierID"),
    {"CarrierName1", "CarrierName", kUniqueNoCase},
};

constexpr TableSpec kTables[] = {
    {"Customer", kCustomerFields, kCustomerIndexes}, {"CustCtl", kCustCtlFields, {}},
    {"CusType", kCusTypeFields, kCusTypeIndexes},    {"CBalance", kCBalanceFields, kCBalanceIndexes},
    {"CContact", kCContactFields, kCContactIndexes}, {"Shipto", kShiptoFields, kShiptoIndexes},
    {"Salesman", kSalesmanFields, kSalesmanIndexes}, {"Tax", kTaxFields, kTaxIndexes},
    {"PriceLst", kPriceLstFields, kPriceLstIndexes}, {"Price", kPriceFields, kPriceIndexes},
    {"Carrier", kCarrierFields, kCarrierIndexes},
};

}  // namespace

std::span<const TableSpec> customerTables() { return kTables; }

}  // namespace quillon::store::schema
