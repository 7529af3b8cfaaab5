#include "profile/dialog_texts.h"

#include <string>

#include "platform/platform.h"
#include "profile/text_table.h"

namespace vgl {

using namespace platform;

ProcessWide<PathText> g_szUtTablePath;

void SetDlgItemUtText(HWND hDlg, const char16_t* key, std::int32_t controlId) {
  const std::u16string text = ReadTableText(key, g_szUtTablePath.get().c_str()).value_or(u"");
  Os().windowing.SetWindowTextW(Os().windowing.GetDlgItem(hDlg, controlId), text.c_str());
}

}  // namespace vgl
