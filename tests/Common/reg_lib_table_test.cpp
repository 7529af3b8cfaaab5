// What is told of the tables when this is compiled. How they are bound is in reg_library_test.cpp.
#include "Common/reg_lib_table.h"

#include <type_traits>

#include "platform/sim/registry_library.h"

namespace vgl {
namespace {

namespace exports = sim::registry_exports;

// --- The simulated library has the shapes that the agent calls

template <RegExport Export, auto Function>
constexpr bool kHasShape =
    std::is_same_v<decltype(Function), typename RegExportShape<char16_t, Export>::Function>;

static_assert(kHasShape<RegExport::CreateKeyEx, &exports::CreateKey>);
static_assert(kHasShape<RegExport::OpenKeyEx, &exports::OpenKey>);
static_assert(kHasShape<RegExport::DeleteKey, &exports::DeleteKey>);
static_assert(kHasShape<RegExport::CloseKey, &exports::CloseKey>);
static_assert(kHasShape<RegExport::EnumKeyEx, &exports::EnumKey>);
static_assert(kHasShape<RegExport::QueryValueEx, &exports::QueryValue>);
static_assert(kHasShape<RegExport::DeleteValue, &exports::DeleteValue>);
static_assert(kHasShape<RegExport::SetValueEx, &exports::SetValue>);
static_assert(kHasShape<RegExport::EnumValue, &exports::EnumValue>);
static_assert(kHasShape<RegExport::QueryInfoKey, &exports::QueryInfo>);
static_assert(kHasShape<RegExport::Unknown20, &exports::Unknown>);

// --- A table can't be asked for what it hasn't got

template <class Table, RegExport Export>
concept CanGet = requires(const Table& table) {
  table.template Get<Export>();
};

static_assert(CanGet<CRegLibTableW, RegExport::CreateKeyEx>);
static_assert(CanGet<CRegLibTableW, RegExport::QueryInfoKey>);
static_assert(!CanGet<CRegLibTableW, RegExport::CloseKey>);
static_assert(!CanGet<CRegLibTableW, RegExport::Unknown20>);
static_assert(CanGet<CRegLibTableA, RegExport::CreateKeyEx>);
static_assert(CanGet<CRegLibTableA, RegExport::CloseKey>);
static_assert(CanGet<CRegLibTableA, RegExport::Unknown20>);
static_assert(!CanGet<CRegLibTableA, RegExport{8}>);

}  // namespace
}  // namespace vgl
