#include "shell/Toolbar.h"

#include <algorithm>

#include "base/Text.h"

namespace quillon::shell {
namespace {

constexpr const char* kAP = "AP";
constexpr const char* kAR = "AR";
constexpr const char* kGL = "GL";
constexpr const char* kInventory = "Inventory";
constexpr const char* kPurchaseOrders = "Purchase Orders";
constexpr const char* kSalesOrders = "Sales Orders";
constexpr const char* kManufacturing = "Manufacturing";
constexpr const char* kSalesAnalysis = "Sales Analysis";
constexpr std::array kSystems = {kAP,           kAR, kGL, kInventory, kPurchaseOrders, kSalesOrders, kManufacturing,
                                 kSalesAnalysis};

constexpr ToolbarButton kButtons[] = {
    {"btnVendors", "Vendors", {{{kAP, "TfrmVendors"}}}},
    {"btnAPInvoices", "Invoices", {{{kAP, "TfrmAPInvoices"}}}},
    {"btnCheques", "Payments", {{{kAP, "TfrmAPCheques"}}}},
    {"btnCustomers", "Customers", {{{kAR, "TfrmCustomers"}, {kSalesOrders, "TfrmCustomers"}}}},
    {"btnARInvoices", "Invoices", {{{kAR, "TfrmARInvoices"}}}},
    {"btnPayments", "Payments", {{{kAR, "TfrmARPayments"}}}},
    {"btnAccounts", "Accounts", {{{kGL, "TfrmGLAccounts"}}}},
    {"btnJVs", "JVs", {{{kGL, "TfrmJVs"}}}},
    {"btnBudget", "Budget", {{{kGL, "TfrmGLBudget"}}}},
    {"btnItems", "Items", {{{kInventory, "TfrmItems"}, {kManufacturing, "TfrmItems"}}}},
    {"btnPhysicalCount", "Physical Count", {{{kInventory, "TfrmPhysicalCount"}}}},
    {"btnAdjustments", "Adjustments", {{{kInventory, "TfrmInvAdjustments"}}}},
    {"btnVendorItems", "Vendor Items", {{{kPurchaseOrders, "TfrmVendorItems"}}}},
    {"btnPurchaseOrders", "Orders", {{{kPurchaseOrders, "TfrmPurchaseOrders"}}}},
    {"btnReceipts", "Receipts", {{{kPurchaseOrders, "TfrmInvReceipts"}}}},
    {"btnSalesOrders", "Orders", {{{kSalesOrders, "TfrmSalesOrders"}}}},
    {"btnShipments", "Shipments", {{{kSalesOrders, "TfrmShipments"}}}},
    {"btnMfgOrders", "Orders", {{{kManufacturing, "TfrmMfgOrders"}}}},
    {"btnMfgReceipts", "Receipts", {{{kManufacturing, "TfrmMfgReceipts"}}}},
    {"btnSalesCharts", "Charts", {{{kSalesAnalysis, "TfrmSalesCharts"}}}},
    {"btnSalesHistory", "History", {{{kSalesAnalysis, "TfrmSalesHistory"}}}},
    {"btnReports",
     "Reports",
     {{{kAP, "TfrmAPReports"},
       {kAR, "TfrmARReports"},
       {kGL, "TfrmGLReports"},
       {kInventory, "TfrmInvReports"},
       {kPurchaseOrders, "TfrmPOReports"},
       {kSalesOrders, "TfrmSOReports"},
       {kManufacturing, "TfrmMfgReports"},
       {kSalesAnalysis, "TfrmSalesReports"}}}},
};

}  // namespace

std::string ToolbarButton::screenOf(std::string_view system) const {
  for (const Use& use : uses)
    if (use.system != nullptr && use.system == system) return use.screen;
  return {};
}

std::span<const ToolbarButton> toolbarButtons() { return kButtons; }

form::ConverterPtr systemChoices() {
  form::Choices choices;
  for (const char* system : kSystems) choices.emplace_back(store::Value(system), system);
  return form::choicesConverter(std::move(choices));
}

store::Value systemNamed(std::string_view name) {
  const auto found = std::ranges::find_if(kSystems, [&](const char* system) { return equalFolded(system, name); });
  return store::Value(found == kSystems.end() ? kSalesOrders : *found);
}

}  // namespace quillon::shell
