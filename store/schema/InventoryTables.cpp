#include "store/schema/TableSpecs.h"

// Items, their classification, warehouses and stock figures, movements and the documents that cause them.
namespace quillon::store::schema {
namespace {

using enum FieldType;

// Items: what is sold, bought, made or used as material.
constexpr FieldSpec kItemFields[] = {
    {"ItemID", integer},
    {"ItemNo", string, 20, kRequired},
    {"ItemDescription", string, 40, kRequired},
    {"SalesGLAccountID", integer, 0, kRequired},
    {"SalesSubAccount1ID", integer},
    {"SalesSubAccount2ID", integer},
    {"SalesSubAccount3ID", integer},
    {"COGSGLAccountID", integer},
    {"COGSSubAccount1ID", integer},
    {"COGSSubAccount2ID", integer},
    {"COGSSubAccount3ID", integer},
    {"InventoryGLAccountID", integer},
    {"InventorySubAccount1ID", integer},
    {"InventorySubAccount2ID", integer},
    {"InventorySubAccount3ID", integer},
    {"TaxCodes", string, 3},
    {"WgtAvgCost", currency},
    {"StandardCost", currency},
    {"Suspended", boolean},
    {"Notes", memo},
    {"ItemTypeID", integer},
    {"Backorderable", boolean},
    {"UnitWgtGross", floating},
    {"QtyProducedPerBatch", floating},
    {"MtlResPerBatch", boolean},
    {"MinimumQty", floating},
    {"Purchased", boolean},
    {"Sold", boolean},
    {"Manufactured", boolean},
    {"Material", boolean},
    {"Location", string, 5},
    {"ItemSubtypeID", integer},
};
constexpr IndexSpec kItemIndexes[] = {
    primary("ItemID"),
    {"ItemDescription1", "ItemDescription", kNoCase},
    plain("ItemTypeID"),
    plain("ItemSubtypeID"),
    plain("InventoryGLAccountID"),
    plain("InventorySubAccount1ID"),
    plain("InventorySubAccount2ID"),
    plain("InventorySubAccount3ID"),
    plain("COGSGLAccountID"),
    plain("COGSSubAccount1ID"),
    plain("COGSSubAccount2ID"),
    plain("COGSSubAccount3ID"),
    plain("SalesGLAccountID"),
    plain("SalesSubAccount1ID"),
    plain("SalesSubAccount2ID"),
    plain("SalesSubAccount3ID"),
    {"ItemNo", "ItemNo", kUniqueNoCase},
    plain("Purchased"),
    plain("Sold"),
    plain("Manufactured"),
    plain("Material"),
};

// Control row of numbering for items, purchasing, manufacturing and stock documents.
constexpr FieldSpec kItemCtlFields[] = {
    {"NextItemNo", integer},          {"NextItemID", integer},       {"NextInvAdjustmentID", integer},
    {"NextInvReceiptID", integer},    {"NextInvReceiptNo", integer}, {"NextPurchaseOrderID", integer},
    {"NextPurchaseOrderNo", integer}, {"NextVItemID", integer},      {"NextMfgOrderID", integer},
    {"NextMfgOrderNo", integer},      {"NextMfgReceiptID", integer}, {"NextMfgReceiptNo", integer},
    {"NextLotID", integer},
};

// Item types, with their costing method.
constexpr FieldSpec kItemTypeFields[] = {
    {"ItemTypeID", integer},
    {"TypeName", string, 40},
    {"Inventory", boolean},
    {"CostingMethod", smallint},
};
constexpr IndexSpec kItemTypeIndexes[] = {
    primary("ItemTypeID"),
    {"TypeName1", "TypeName", kUniqueNoCase},
};

// Item subtypes.
constexpr FieldSpec kItemSubtypeFields[] = {
    {"ItemSubtypeID", integer},
    {"SubtypeName", string, 40},
    {"ItemTypeID", integer},
};
constexpr IndexSpec kItemSubtypeIndexes[] = {
    primary("ItemSubtypeID"),
    {"SubtypeName1", "SubtypeName", kUniqueNoCase},
    plain("ItemTypeID"),
};

// Warehouses.
constexpr FieldSpec kWarehseFields[] = {
    {"WarehouseID", integer},       {"WarehouseName", string, 20},  {"WHAddressLine1", string, 35},
    {"WHAddressLine2", string, 35}, {"WHAddressLine3", string, 35}, {"WHAddressLine4", string, 35},
};
constexpr IndexSpec kWarehseIndexes[] = {
    primary("WarehouseID"),
    {"WarehouseName1", "WarehouseName", kUniqueNoCase},
};

// Stock figures by item and warehouse.
constexpr FieldSpec kIBalanceFields[] = {
    {"ItemID", integer},
    {"WarehouseID", integer},
    {"QtyOnHand", floating},
    {"QtyShippedNotYetUpd", floating},
};
constexpr IndexSpec kIBalanceIndexes[] = {
    primary("ItemID;WarehouseID"),
    plain("ItemID"),
    plain("WarehouseID"),
};

// One row a stock movement.
constexpr FieldSpec kIHistFields[] = {
    {"IHistID", autoInc},     {"ItemID", integer},
    {"WarehouseID", integer}, {"GLYear", smallint},
    {"GLPeriod", smallint},   {"TransType", smallint},
    {"TransDate", date},      {"Quantity", floating},
    {"UnitCost", currency},   {"TransDescription", string, 50},
    {"ReceiptID", integer},   {"AdjustmentID", integer},
    {"ARInvoiceID", integer}, {"ShipmentID", integer},
    {"LotID", integer},
};
constexpr IndexSpec kIHistIndexes[] = {
    primary("IHistID"),
    {"ItemIDPeriodDate", "ItemID;GLYear;GLPeriod;TransDate"},
    {"ItemIDWhseIDPeriodDate", "ItemID;WarehouseID;GLYear;GLPeriod;TransDate"},
    descending("PeriodDateDESC", "GLYear;GLPeriod;TransDate;IHistID"),
    plain("GLPeriod"),
    plain("GLYear"),
    plain("ItemID"),
    plain("WarehouseID"),
    plain("TransType"),
    plain("LotID"),
};

// Physical count sheet rows.
constexpr FieldSpec kICountFields[] = {
    {"ICountID", autoInc},           {"ItemID", integer}, {"LotID", integer},
    {"WarehouseID", integer},        {"CountDate", date}, {"SystemQtyOnHand", floating},
    {"PhysicalQtyOnHand", floating},
};
constexpr IndexSpec kICountIndexes[] = {
    primary("ICountID"),
    plain("ItemID"),
    plain("LotID"),
    plain("WarehouseID"),
};

// Inventory adjustment headers.
constexpr FieldSpec kIAdjustFields[] = {
    {"AdjustmentID", integer},      {"GLYear", smallint},     {"GLPeriod", smallint}, {"AdjDate", date},
    {"AdjDescription", string, 50}, {"WarehouseID", integer}, {"Posted", boolean},    {"FromWarehouseID", integer},
};
constexpr IndexSpec kIAdjustIndexes[] = {
    primary("AdjustmentID"),
    descending("PeriodDateDESC", "GLYear;GLPeriod;AdjDate;AdjustmentID"),
    plain("WarehouseID"),
    plain("Posted"),
};

// Inventory adjustment lines.
constexpr FieldSpec kIAdjDetFields[] = {
    {"AdjustmentID", integer}, {"Seq", integer}, {"ItemID", integer}, {"Quantity", floating}, {"LotID", integer},
};
constexpr IndexSpec kIAdjDetIndexes[] = {
    primary("AdjustmentID;Seq"),
    plain("ItemID"),
    plain("LotID"),
};

// Inventory receipt headers.
constexpr FieldSpec kIReceiptFields[] = {
    {"ReceiptID", integer},
    {"ReceiptNo", string, 10},
    {"GLYear", smallint},
    {"GLPeriod", smallint},
    {"ReceiptDate", date},
    {"OrderID", integer},
    {"PurchaseOrderNo", string, 10},
    {"VendorID", integer},
    {"WarehouseID", integer},
    {"Posted", boolean},
    {"ExchangeRate", floating},
};
constexpr IndexSpec kIReceiptIndexes[] = {
    primary("ReceiptID"),     plain("OrderID"),
    plain("PurchaseOrderNo"), plain("ReceiptNo"),
    plain("VendorID"),        plain("WarehouseID"),
    plain("Posted"),          descending("ReceiptDateReceiptNoDESC", "ReceiptDate;ReceiptNo"),
};

// Inventory receipt lines.
constexpr FieldSpec kIRecDetFields[] = {
    {"ReceiptID", integer}, {"Seq", integer},      {"OrderID", integer},   {"QtyReceived", floating},
    {"UnitCost", currency}, {"Notes", memo},       {"LotNo", string, 15},  {"ExpiryDate", date},
    {"Lot2No", string, 15}, {"ExpiryDate2", date}, {"Lot3No", string, 15}, {"ExpiryDate3", date},
    {"QtyLot1", floating},  {"QtyLot2", floating}, {"QtyLot3", floating},
};
constexpr IndexSpec kIRecDetIndexes[] = {
    primary("ReceiptID;Seq"),
};

// Lots of an item.
constexpr FieldSpec kLotFields[] = {
    {"LotID", integer}, {"ItemID", integer}, {"LotNo", string, 15}, {"ExpiryDate", date}, {"Completed", boolean},
};
constexpr IndexSpec kLotIndexes[] = {
    primary("LotID"), plain("ItemID"), plain("LotNo"), plain("ExpiryDate"), plain("Completed"),
};

constexpr TableSpec kTables[] = {
    {"Item", kItemFields, kItemIndexes},
    {"ItemCtl", kItemCtlFields, {}},
    {"ItemType", kItemTypeFields, kItemTypeIndexes},
    {"ItemSubtype", kItemSubtypeFields, kItemSubtypeIndexes},
    {"Warehse", kWarehseFields, kWarehseIndexes},
    {"IBalance", kIBalanceFields, kIBalanceIndexes},
    {"IHist", kIHistFields, kIHistIndexes},
    {"ICount", kICountFields, kICountIndexes},
    {"IAdjust", kIAdjustFields, kIAdjustIndexes},
    {"IAdjDet", kIAdjDetFields, kIAdjDetIndexes},
    {"IReceipt", kIReceiptFields, kIReceiptIndexes},
    {"IRecDet", kIRecDetFields, kIRecDetIndexes},
    {"Lot", kLotFields, kLotIndexes},
};

}  // namespace

std::span<const TableSpec> inventoryTables() { return kTables; }

}  // namespace quillon::store::schema
