#include "store/schema/TableSpecs.h"

// Bills of material, resources, manufacturing orders and receipts.
namespace quillon::store::schema {
namespace {

using enum FieldType;

// Materials of a bill of material.
constexpr FieldSpec kItemMtlFields[] = {
    {"ItemID", integer}, {"Seq", integer}, {"MaterialItemID", integer}, {"UtopianQty", floating}, {"WastePC", floating},
};
constexpr IndexSpec kItemMtlIndexes[] = {
    primary("ItemID;Seq"),
    plain("MaterialItemID"),
};

// Resources of a bill of material.
constexpr FieldSpec kItemResFields[] = {
    {"ItemID", integer}, {"Seq", integer}, {"ResourceID", integer}, {"Hours", floating}, {"Task", string, 40},
};
constexpr IndexSpec kItemResIndexes[] = {
    primary("ItemID;Seq"),
    plain("ResourceID"),
};

// Resources: machines and people, with their standard cost of an hour.
constexpr FieldSpec kResourceFields[] = {
    {"ResourceID", integer},
    {"ResourceName", string, 40},
    {"StandardCostHr", currency},
};
constexpr IndexSpec kResourceIndexes[] = {
    primary("ResourceID"),
    {"ResourceName1", "ResourceName", kUniqueNoCase},
};

// Manufacturing order headers.
constexpr FieldSpec kMOrderFields[] = {
    {"OrderID", integer},
    {"MfgOrderNo", string, 10},
    {"OrderDate", date},
    {"RequestedReceiptDate", date},
    {"OrderStatus", smallint},
    {"BillofMtlPrinted", boolean},
    {"ItemID", integer},
    {"QtyOrdered", floating},
    {"QtyReceived", floating},
    {"Comments", memo},
    {"NumberOfReceipts", smallint},
};
constexpr IndexSpec kMOrderIndexes[] = {
    primary("OrderID"),
    {"MfgOrderNo", "MfgOrderNo", kUnique},
    plain("OrderStatus"),
    plain("RequestedReceiptDate"),
    descending("OrderDateMfgOrderNoDESC", "OrderDate;MfgOrderNo"),
    plain("BillofMtlPrinted"),
};

// Materials of a manufacturing order.
constexpr FieldSpec kMOrdMtlFields[] = {
    {"OrderID", integer},     {"Seq", integer},      {"MaterialItemID", integer},
    {"QtyOrdered", floating}, {"WastePC", floating},
};
constexpr IndexSpec kMOrdMtlIndexes[] = {
    primary("OrderID;Seq"),
    plain("MaterialItemID"),
};

// Resources of a manufacturing order.
constexpr FieldSpec kMOrdResFields[] = {
    {"OrderID", integer}, {"Seq", integer}, {"ResourceID", integer}, {"HoursOrdered", floating}, {"Task", string, 40},
};
constexpr IndexSpec kMOrdResIndexes[] = {
    primary("OrderID;Seq"),
    plain("ResourceID"),
};

// Manufacturing receipt headers.
constexpr FieldSpec kMReceiptFields[] = {
    {"ReceiptID", integer},   {"ReceiptNo", string, 10}, {"GLYear", smallint},       {"GLPeriod", smallint},
    {"ReceiptDate", date},    {"OrderID", integer},      {"MfgOrderNo", string, 10}, {"ItemID", integer},
    {"WarehouseID", integer}, {"QtyReceived", floating}, {"Posted", boolean},        {"LotNo", string, 15},
    {"ExpiryDate", date},
};
constexpr IndexSpec kMReceiptIndexes[] = {
    primary("ReceiptID"),
    plain("OrderID"),
    plain("MfgOrderNo"),
    plain("ReceiptNo"),
    plain("ItemID"),
    plain("WarehouseID"),
    descending("ReceiptDateReceiptNoDESC", "ReceiptDate;ReceiptNo"),
    plain("ReceiptDate"),
    plain("Posted"),
};

// Materials of a manufacturing receipt.
constexpr FieldSpec kMRecMtlFields[] = {
    {"ReceiptID", integer}, {"Seq", integer}, {"MaterialItemID", integer}, {"QtyUsed", floating}, {"LotID", integer},
};
constexpr IndexSpec kMRecMtlIndexes[] = {
    primary("ReceiptID;Seq"),
    plain("MaterialItemID"),
    plain("LotID"),
};

// Resources of a manufacturing receipt.
constexpr FieldSpec kMRecResFields[] = {
    {"ReceiptID", integer}, {"Seq", integer}, {"ResourceID", integer}, {"HoursUsed", floating}, {"Task", string, 40},
};
constexpr IndexSpec kMRecResIndexes[] = {
    primary("ReceiptID;Seq"),
    plain("ResourceID"),
};

constexpr TableSpec kTables[] = {
    {"ItemMtl", kItemMtlFields, kItemMtlIndexes},    {"ItemRes", kItemResFields, kItemResIndexes},
    {"Resource", kResourceFields, kResourceIndexes}, {"MOrder", kMOrderFields, kMOrderIndexes},
    {"MOrdMtl", kMOrdMtlFields, kMOrdMtlIndexes},    {"MOrdRes", kMOrdResFields, kMOrdResIndexes},
    {"MReceipt", kMReceiptFields, kMReceiptIndexes}, {"MRecMtl", kMRecMtlFields, kMRecMtlIndexes},
    {"MRecRes", kMRecResFields, kMRecResIndexes},
};

}  // namespace

std::span<const TableSpec> manufacturingTables() { return kTables; }

}  // namespace quillon::store::schema
