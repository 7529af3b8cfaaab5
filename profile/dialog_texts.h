// Texts of a text table (text_table.h) on the controls of a dialog.
#pragma once

#include <cstdint>

#include "Common/fixed_text.h"
#include "platform/process_wide.h"
#include "platform/types.h"

namespace vgl {

// The table that such texts are read from; set once for the process. Empty: no key has a value.
extern platform::ProcessWide<PathText> g_szUtTablePath;

// Gives the control of that number what the table has for `key`, unescaped; an empty text when it
// has nothing for it. Nothing happens in a dialog without such a control.
void SetDlgItemUtText(platform::HWND hDlg, const char16_t* key, std::int32_t controlId);

}  // namespace vgl
