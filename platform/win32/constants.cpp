// Proves that every number and layout in the headers of platform/ is Windows' own.
//
// Behind <windows.h> the names mean Windows' values, so ours are taken down in front of it.
#include <algorithm>
#include <cstddef>

#include "platform/owner_draw.h"
#include "platform/platform.h"
#include "platform/stock_icon.h"

// clang-format off
#define FOR_EACH_NUMBER(USE)                                                                       \
  /* types.h */                                                                                    \
  USE(MAX_PATH) USE(INFINITE) USE(ERROR_SUCCESS) USE(ERROR_FILE_NOT_FOUND)                         \
  USE(ERROR_PATH_NOT_FOUND) USE(ERROR_ACCESS_DENIED) USE(ERROR_INVALID_HANDLE)                     \
  USE(ERROR_NOT_ENOUGH_MEMORY) USE(ERROR_NO_MORE_FILES) USE(ERROR_SHARING_VIOLATION)               \
  USE(ERROR_FILE_EXISTS) USE(ERROR_INVALID_PARAMETER) USE(ERROR_BUFFER_OVERFLOW)                   \
  USE(ERROR_DISK_FULL) USE(ERROR_INSUFFICIENT_BUFFER) USE(ERROR_MOD_NOT_FOUND)                     \
  USE(ERROR_NEGATIVE_SEEK) USE(ERROR_BAD_PATHNAME) USE(ERROR_INVALID_NAME)                         \
  USE(ERROR_ALREADY_EXISTS) USE(ERROR_MORE_DATA) USE(ERROR_NO_MORE_ITEMS) USE(ERROR_DIRECTORY)     \
  USE(ERROR_NOT_SUPPORTED) USE(ERROR_PROC_NOT_FOUND) USE(ERROR_BAD_EXE_FORMAT)                    \
  USE(ERROR_NOT_OWNER) USE(ERROR_TOO_MANY_POSTS) USE(ERROR_KEY_DELETED)                            \
  USE(ERROR_UNKNOWN_REVISION) USE(ERROR_MESSAGE_SYNC_ONLY) USE(ERROR_INVALID_WINDOW_HANDLE) USE(ERROR_CLASS_ALREADY_EXISTS)    \
  USE(ERROR_CANNOT_FIND_WND_CLASS) USE(ERROR_NO_SYSTEM_RESOURCES)                                  \
  /* registry.h */                                                                                 \
  USE(KEY_QUERY_VALUE) USE(KEY_SET_VALUE) USE(KEY_CREATE_SUB_KEY) USE(KEY_ENUMERATE_SUB_KEYS)      \
  USE(KEY_READ) USE(KEY_WRITE) USE(KEY_ALL_ACCESS) USE(REG_NONE) USE(REG_SZ) USE(REG_EXPAND_SZ)    \
  USE(REG_BINARY) USE(REG_DWORD) USE(REG_DWORD_BIG_ENDIAN) USE(REG_MULTI_SZ) USE(REG_CREATED_NEW_KEY)              \
  USE(REG_OPENED_EXISTING_KEY)                                                                     \
  /* files.h */                                                                                    \
  USE(GENERIC_READ) USE(GENERIC_WRITE) USE(FILE_APPEND_DATA) USE(FILE_SHARE_READ)                  \
  USE(FILE_SHARE_WRITE) USE(FILE_SHARE_DELETE) USE(CREATE_NEW) USE(CREATE_ALWAYS)                  \
  USE(OPEN_EXISTING) USE(OPEN_ALWAYS) USE(FILE_ATTRIBUTE_READONLY) USE(FILE_ATTRIBUTE_DIRECTORY)   \
  USE(FILE_ATTRIBUTE_ARCHIVE) USE(FILE_ATTRIBUTE_NORMAL) USE(FILE_ATTRIBUTE_TEMPORARY)             \
  USE(INVALID_FILE_ATTRIBUTES) USE(FILE_BEGIN) USE(FILE_CURRENT) USE(FILE_END)                     \
  USE(INVALID_SET_FILE_POINTER) USE(INVALID_FILE_SIZE)                                             \
  /* kernel_objects.h */                                                                           \
  USE(SYNCHRONIZE) USE(WAIT_OBJECT_0) USE(WAIT_ABANDONED) USE(WAIT_TIMEOUT) USE(WAIT_FAILED)       \
  /* sections.h */                                                                                 \
  USE(PAGE_READWRITE) USE(FILE_MAP_ALL_ACCESS) USE(ERROR_INVALID_ADDRESS)                          \
  /* spooler.h */                                                                                  \
  USE(PRINTER_ACCESS_ADMINISTER) USE(PRINTER_ACCESS_USE) USE(PRINTER_ALL_ACCESS)                   \
  USE(PRINTER_ATTRIBUTE_NETWORK) USE(ERROR_INVALID_LEVEL) USE(ERROR_UNKNOWN_PRINTER_DRIVER)        \
  USE(ERROR_INVALID_PRINTER_NAME) USE(ERROR_PRINTER_DELETED)                                       \
  /* security.h */                                                                                 \
  USE(SECURITY_DESCRIPTOR_REVISION) USE(ACL_REVISION) USE(SECURITY_WORLD_RID)                      \
  USE(SECURITY_LOCAL_SYSTEM_RID) USE(ERROR_REVISION_MISMATCH) USE(ERROR_INVALID_SID)               \
  USE(ERROR_ALLOTTED_SPACE_EXCEEDED)                                                               \
  /* system_info.h */                                                                              \
  USE(VER_PLATFORM_WIN32_NT)                                                                       \
  /* nls.h */                                                                                      \
  USE(CP_ACP) USE(CT_CTYPE2) USE(C2_RIGHTTOLEFT)                                                   \
  /* resources.h */                                                                                \
  USE(IMAGE_ICON) USE(LR_DEFAULTCOLOR) USE(ERROR_RESOURCE_NAME_NOT_FOUND)                          \
  USE(ERROR_INVALID_ICON_HANDLE)                                                                   \
  /* menus.h */                                                                                    \
  USE(MF_BYCOMMAND) USE(MF_BYPOSITION) USE(MF_STRING) USE(MF_GRAYED) USE(MF_DISABLED)              \
  USE(MF_CHECKED) USE(MF_OWNERDRAW) USE(MF_SEPARATOR) USE(MIIM_STATE) USE(MIIM_ID)                 \
  USE(MIIM_SUBMENU) USE(MIIM_TYPE) USE(MIIM_DATA) USE(MIIM_STRING) USE(MIIM_FTYPE)                 \
  USE(MFT_STRING) USE(MFT_OWNERDRAW) USE(MFT_SEPARATOR) USE(MFT_RIGHTORDER)                        \
  USE(MFT_RIGHTJUSTIFY) USE(MFS_ENABLED) USE(MFS_GRAYED) USE(MFS_CHECKED) USE(MFS_DEFAULT)         \
  USE(TPM_LEFTBUTTON) USE(TPM_RIGHTBUTTON) USE(WM_CANCELMODE) USE(ERROR_INVALID_MENU_HANDLE)       \
  USE(ERROR_POPUP_ALREADY_ACTIVE) USE(ERROR_MENU_ITEM_NOT_FOUND)                                   \
  /* shell.h */                                                                                    \
  USE(CSIDL_COMMON_APPDATA) USE(NIM_ADD) USE(NIM_MODIFY) USE(NIM_DELETE) USE(NIF_MESSAGE)          \
  USE(NIF_ICON) USE(NIF_TIP) USE(SW_SHOWNORMAL)                                                    \
  /* drawing.h */                                                                                  \
  USE(SM_CYMENU) USE(SM_CXMENUCHECK) USE(COLOR_MENU) USE(COLOR_MENUTEXT) USE(COLOR_HIGHLIGHT)      \
  USE(COLOR_HIGHLIGHTTEXT) USE(CLR_INVALID) USE(TA_LEFT) USE(TA_RIGHT) USE(TA_RTLREADING)          \
  USE(GDI_ERROR) USE(SRCCOPY) USE(DI_NORMAL) USE(SPI_GETNONCLIENTMETRICS)                          \
  /* owner_draw.h */                                                                               \
  USE(ODT_MENU) USE(ODA_DRAWENTIRE) USE(ODA_SELECT) USE(ODS_SELECTED)                              \
  /* stock_icon.h */                                                                               \
  USE(SIID_SHIELD) USE(SHGSI_ICON) USE(SHGSI_SMALLICON)                                            \
  /* processes.h */                                                                                \
  USE(ERROR_FILENAME_EXCED_RANGE)                                                                  \
  /* windowing.h */                                                                                \
  USE(WM_NULL) USE(WM_CREATE) USE(WM_DESTROY) USE(WM_CLOSE) USE(WM_QUIT) USE(WM_DRAWITEM)          \
  USE(WM_MEASUREITEM) USE(WM_NCCREATE) USE(WM_NCDESTROY) USE(WM_COMMAND) USE(WM_TIMER)             \
  USE(WM_LBUTTONDOWN) USE(WM_LBUTTONUP) USE(WM_LBUTTONDBLCLK) USE(WM_RBUTTONDOWN)                  \
  USE(WM_RBUTTONUP) USE(WM_USER) USE(WS_VISIBLE) USE(WS_CHILD) USE(GWL_STYLE)                      \
  USE(VK_SHIFT) USE(VK_CONTROL) USE(VK_SPACE) USE(SWP_NOSIZE) USE(SWP_NOMOVE)                      \
  USE(SWP_NOACTIVATE) USE(SWP_SHOWWINDOW)                                                          \
  USE(CS_BYTEALIGNWINDOW) USE(WS_OVERLAPPEDWINDOW) USE(WS_MINIMIZE) USE(CW_USEDEFAULT)             \
  USE(SW_HIDE) USE(MB_OK) USE(MB_RIGHT) USE(MB_RTLREADING) USE(IDOK) USE(IDCANCEL)                 \
  USE(USER_TIMER_MINIMUM)
// clang-format on

// Compared as 32-bit patterns: whether a flag's type is signed differs between the two sides.
#define TAKE_DOWN(name) constexpr auto ours_##name = static_cast<std::uint32_t>(platform::name);
#define PROVE_EQUAL(name) static_assert(ours_##name == static_cast<std::uint32_t>(name));

namespace {
FOR_EACH_NUMBER(TAKE_DOWN)
constexpr auto ours_world = platform::SECURITY_WORLD_SID_AUTHORITY;
constexpr auto ours_nt = platform::SECURITY_NT_AUTHORITY;
}  // namespace

#include "platform/win32/conversion.h"

#include <shellapi.h>
#include <shlobj.h>
#include <winspool.h>

FOR_EACH_NUMBER(PROVE_EQUAL)

namespace {
constexpr SID_IDENTIFIER_AUTHORITY theirs_world = SECURITY_WORLD_SID_AUTHORITY;
constexpr SID_IDENTIFIER_AUTHORITY theirs_nt = SECURITY_NT_AUTHORITY;
}  // namespace
static_assert(std::ranges::equal(ours_world.value, theirs_world.Value));
static_assert(std::ranges::equal(ours_nt.value, theirs_nt.Value));
static_assert(sizeof(platform::SidIdentifierAuthority) == sizeof(SID_IDENTIFIER_AUTHORITY));

// A handle constant is a pointer, which no constant expression may hold: the predefined registry
// keys, INVALID_HANDLE_VALUE and the places of SetWindowPos are proven by the contract tests that
// use them.

#define PROVE_SAME_PLACE(Ours, ourMember, Theirs, theirMember)                          \
  static_assert(offsetof(platform::Ours, ourMember) == offsetof(Theirs, theirMember) && \
                sizeof(platform::Ours::ourMember) == sizeof(Theirs{}.theirMember));

static_assert(sizeof(platform::Point) == sizeof(POINT));
PROVE_SAME_PLACE(Point, x, POINT, x)
PROVE_SAME_PLACE(Point, y, POINT, y)

static_assert(sizeof(platform::Size) == sizeof(SIZE));
PROVE_SAME_PLACE(Size, width, SIZE, cx)
PROVE_SAME_PLACE(Size, height, SIZE, cy)

static_assert(sizeof(platform::Rect) == sizeof(RECT));
PROVE_SAME_PLACE(Rect, left, RECT, left)
PROVE_SAME_PLACE(Rect, top, RECT, top)
PROVE_SAME_PLACE(Rect, right, RECT, right)
PROVE_SAME_PLACE(Rect, bottom, RECT, bottom)

static_assert(sizeof(platform::LogFont) == sizeof(LOGFONTW));
PROVE_SAME_PLACE(LogFont, height, LOGFONTW, lfHeight)
PROVE_SAME_PLACE(LogFont, width, LOGFONTW, lfWidth)
PROVE_SAME_PLACE(LogFont, escapement, LOGFONTW, lfEscapement)
PROVE_SAME_PLACE(LogFont, orientation, LOGFONTW, lfOrientation)
PROVE_SAME_PLACE(LogFont, weight, LOGFONTW, lfWeight)
PROVE_SAME_PLACE(LogFont, italic, LOGFONTW, lfItalic)
PROVE_SAME_PLACE(LogFont, underline, LOGFONTW, lfUnderline)
PROVE_SAME_PLACE(LogFont, strikeOut, LOGFONTW, lfStrikeOut)
PROVE_SAME_PLACE(LogFont, charSet, LOGFONTW, lfCharSet)
PROVE_SAME_PLACE(LogFont, outPrecision, LOGFONTW, lfOutPrecision)
PROVE_SAME_PLACE(LogFont, clipPrecision, LOGFONTW, lfClipPrecision)
PROVE_SAME_PLACE(LogFont, quality, LOGFONTW, lfQuality)
PROVE_SAME_PLACE(LogFont, pitchAndFamily, LOGFONTW, lfPitchAndFamily)
PROVE_SAME_PLACE(LogFont, faceName, LOGFONTW, lfFaceName)

// 504 bytes, as the agent says when it asks.
static_assert(sizeof(platform::NonClientMetrics) == sizeof(NONCLIENTMETRICSW));
static_assert(sizeof(platform::NonClientMetrics) == 504);
PROVE_SAME_PLACE(NonClientMetrics, size, NONCLIENTMETRICSW, cbSize)
PROVE_SAME_PLACE(NonClientMetrics, borderWidth, NONCLIENTMETRICSW, iBorderWidth)
PROVE_SAME_PLACE(NonClientMetrics, captionFont, NONCLIENTMETRICSW, lfCaptionFont)
PROVE_SAME_PLACE(NonClientMetrics, smallCaptionFont, NONCLIENTMETRICSW, lfSmCaptionFont)
PROVE_SAME_PLACE(NonClientMetrics, menuWidth, NONCLIENTMETRICSW, iMenuWidth)
PROVE_SAME_PLACE(NonClientMetrics, menuFont, NONCLIENTMETRICSW, lfMenuFont)
PROVE_SAME_PLACE(NonClientMetrics, statusFont, NONCLIENTMETRICSW, lfStatusFont)
PROVE_SAME_PLACE(NonClientMetrics, messageFont, NONCLIENTMETRICSW, lfMessageFont)
PROVE_SAME_PLACE(NonClientMetrics, paddedBorderWidth, NONCLIENTMETRICSW, iPaddedBorderWidth)

static_assert(sizeof(platform::Bitmap) == sizeof(BITMAP));
PROVE_SAME_PLACE(Bitmap, type, BITMAP, bmType)
PROVE_SAME_PLACE(Bitmap, width, BITMAP, bmWidth)
PROVE_SAME_PLACE(Bitmap, height, BITMAP, bmHeight)
PROVE_SAME_PLACE(Bitmap, bytesOfLine, BITMAP, bmWidthBytes)
PROVE_SAME_PLACE(Bitmap, planes, BITMAP, bmPlanes)
PROVE_SAME_PLACE(Bitmap, bitsPerPixel, BITMAP, bmBitsPixel)
PROVE_SAME_PLACE(Bitmap, bits, BITMAP, bmBits)

static_assert(sizeof(platform::StockIconInfo) == sizeof(SHSTOCKICONINFO));
static_assert(sizeof(platform::StockIconInfo) == 544);
PROVE_SAME_PLACE(StockIconInfo, size, SHSTOCKICONINFO, cbSize)
PROVE_SAME_PLACE(StockIconInfo, icon, SHSTOCKICONINFO, hIcon)
PROVE_SAME_PLACE(StockIconInfo, systemImage, SHSTOCKICONINFO, iSysImageIndex)
PROVE_SAME_PLACE(StockIconInfo, index, SHSTOCKICONINFO, iIcon)
PROVE_SAME_PLACE(StockIconInfo, path, SHSTOCKICONINFO, szPath)

static_assert(sizeof(platform::ProcessInformation) == sizeof(PROCESS_INFORMATION));
PROVE_SAME_PLACE(ProcessInformation, process, PROCESS_INFORMATION, hProcess)
PROVE_SAME_PLACE(ProcessInformation, thread, PROCESS_INFORMATION, hThread)
PROVE_SAME_PLACE(ProcessInformation, processId, PROCESS_INFORMATION, dwProcessId)
PROVE_SAME_PLACE(ProcessInformation, threadId, PROCESS_INFORMATION, dwThreadId)

static_assert(sizeof(platform::MeasureItem) == sizeof(MEASUREITEMSTRUCT));
PROVE_SAME_PLACE(MeasureItem, controlType, MEASUREITEMSTRUCT, CtlType)
PROVE_SAME_PLACE(MeasureItem, controlId, MEASUREITEMSTRUCT, CtlID)
PROVE_SAME_PLACE(MeasureItem, itemId, MEASUREITEMSTRUCT, itemID)
PROVE_SAME_PLACE(MeasureItem, width, MEASUREITEMSTRUCT, itemWidth)
PROVE_SAME_PLACE(MeasureItem, height, MEASUREITEMSTRUCT, itemHeight)
PROVE_SAME_PLACE(MeasureItem, itemData, MEASUREITEMSTRUCT, itemData)

static_assert(sizeof(platform::DrawItem) == sizeof(DRAWITEMSTRUCT));
PROVE_SAME_PLACE(DrawItem, controlType, DRAWITEMSTRUCT, CtlType)
PROVE_SAME_PLACE(DrawItem, controlId, DRAWITEMSTRUCT, CtlID)
PROVE_SAME_PLACE(DrawItem, itemId, DRAWITEMSTRUCT, itemID)
PROVE_SAME_PLACE(DrawItem, action, DRAWITEMSTRUCT, itemAction)
PROVE_SAME_PLACE(DrawItem, state, DRAWITEMSTRUCT, itemState)
PROVE_SAME_PLACE(DrawItem, owner, DRAWITEMSTRUCT, hwndItem)
PROVE_SAME_PLACE(DrawItem, deviceContext, DRAWITEMSTRUCT, hDC)
PROVE_SAME_PLACE(DrawItem, area, DRAWITEMSTRUCT, rcItem)
PROVE_SAME_PLACE(DrawItem, itemData, DRAWITEMSTRUCT, itemData)

static_assert(sizeof(platform::PrinterDefaults) == sizeof(PRINTER_DEFAULTSW));
PROVE_SAME_PLACE(PrinterDefaults, datatype, PRINTER_DEFAULTSW, pDatatype)
PROVE_SAME_PLACE(PrinterDefaults, devMode, PRINTER_DEFAULTSW, pDevMode)
PROVE_SAME_PLACE(PrinterDefaults, desiredAccess, PRINTER_DEFAULTSW, DesiredAccess)

static_assert(sizeof(platform::PrinterInfo2) == sizeof(PRINTER_INFO_2W));
PROVE_SAME_PLACE(PrinterInfo2, serverName, PRINTER_INFO_2W, pServerName)
PROVE_SAME_PLACE(PrinterInfo2, printerName, PRINTER_INFO_2W, pPrinterName)
PROVE_SAME_PLACE(PrinterInfo2, shareName, PRINTER_INFO_2W, pShareName)
PROVE_SAME_PLACE(PrinterInfo2, portName, PRINTER_INFO_2W, pPortName)
PROVE_SAME_PLACE(PrinterInfo2, driverName, PRINTER_INFO_2W, pDriverName)
PROVE_SAME_PLACE(PrinterInfo2, comment, PRINTER_INFO_2W, pComment)
PROVE_SAME_PLACE(PrinterInfo2, location, PRINTER_INFO_2W, pLocation)
PROVE_SAME_PLACE(PrinterInfo2, devMode, PRINTER_INFO_2W, pDevMode)
PROVE_SAME_PLACE(PrinterInfo2, separatorFile, PRINTER_INFO_2W, pSepFile)
PROVE_SAME_PLACE(PrinterInfo2, printProcessor, PRINTER_INFO_2W, pPrintProcessor)
PROVE_SAME_PLACE(PrinterInfo2, datatype, PRINTER_INFO_2W, pDatatype)
PROVE_SAME_PLACE(PrinterInfo2, parameters, PRINTER_INFO_2W, pParameters)
PROVE_SAME_PLACE(PrinterInfo2, securityDescriptor, PRINTER_INFO_2W, pSecurityDescriptor)
PROVE_SAME_PLACE(PrinterInfo2, attributes, PRINTER_INFO_2W, Attributes)
PROVE_SAME_PLACE(PrinterInfo2, priority, PRINTER_INFO_2W, Priority)
PROVE_SAME_PLACE(PrinterInfo2, defaultPriority, PRINTER_INFO_2W, DefaultPriority)
PROVE_SAME_PLACE(PrinterInfo2, startTime, PRINTER_INFO_2W, StartTime)
PROVE_SAME_PLACE(PrinterInfo2, untilTime, PRINTER_INFO_2W, UntilTime)
PROVE_SAME_PLACE(PrinterInfo2, status, PRINTER_INFO_2W, Status)
PROVE_SAME_PLACE(PrinterInfo2, jobs, PRINTER_INFO_2W, cJobs)
PROVE_SAME_PLACE(PrinterInfo2, averagePagesPerMinute, PRINTER_INFO_2W, AveragePPM)

static_assert(sizeof(platform::SecurityDescriptor) == sizeof(SECURITY_DESCRIPTOR));
static_assert(alignof(platform::SecurityDescriptor) == alignof(SECURITY_DESCRIPTOR));
static_assert(sizeof(platform::SecurityAttributes) == sizeof(SECURITY_ATTRIBUTES));
PROVE_SAME_PLACE(SecurityAttributes, length, SECURITY_ATTRIBUTES, nLength)
PROVE_SAME_PLACE(SecurityAttributes, descriptor, SECURITY_ATTRIBUTES, lpSecurityDescriptor)
PROVE_SAME_PLACE(SecurityAttributes, inheritHandle, SECURITY_ATTRIBUTES, bInheritHandle)

static_assert(sizeof(platform::PrinterInfo4) == sizeof(PRINTER_INFO_4W));
PROVE_SAME_PLACE(PrinterInfo4, printerName, PRINTER_INFO_4W, pPrinterName)
PROVE_SAME_PLACE(PrinterInfo4, serverName, PRINTER_INFO_4W, pServerName)
PROVE_SAME_PLACE(PrinterInfo4, attributes, PRINTER_INFO_4W, Attributes)

static_assert(sizeof(platform::DriverInfo2) == sizeof(DRIVER_INFO_2W));
PROVE_SAME_PLACE(DriverInfo2, version, DRIVER_INFO_2W, cVersion)
PROVE_SAME_PLACE(DriverInfo2, name, DRIVER_INFO_2W, pName)
PROVE_SAME_PLACE(DriverInfo2, environment, DRIVER_INFO_2W, pEnvironment)
PROVE_SAME_PLACE(DriverInfo2, driverPath, DRIVER_INFO_2W, pDriverPath)
PROVE_SAME_PLACE(DriverInfo2, dataFile, DRIVER_INFO_2W, pDataFile)
PROVE_SAME_PLACE(DriverInfo2, configFile, DRIVER_INFO_2W, pConfigFile)

static_assert(sizeof(platform::DriverInfo3) == sizeof(DRIVER_INFO_3W));
PROVE_SAME_PLACE(DriverInfo3, version, DRIVER_INFO_3W, cVersion)
PROVE_SAME_PLACE(DriverInfo3, name, DRIVER_INFO_3W, pName)
PROVE_SAME_PLACE(DriverInfo3, environment, DRIVER_INFO_3W, pEnvironment)
PROVE_SAME_PLACE(DriverInfo3, driverPath, DRIVER_INFO_3W, pDriverPath)
PROVE_SAME_PLACE(DriverInfo3, dataFile, DRIVER_INFO_3W, pDataFile)
PROVE_SAME_PLACE(DriverInfo3, configFile, DRIVER_INFO_3W, pConfigFile)
PROVE_SAME_PLACE(DriverInfo3, helpFile, DRIVER_INFO_3W, pHelpFile)
PROVE_SAME_PLACE(DriverInfo3, dependentFiles, DRIVER_INFO_3W, pDependentFiles)
PROVE_SAME_PLACE(DriverInfo3, monitorName, DRIVER_INFO_3W, pMonitorName)
PROVE_SAME_PLACE(DriverInfo3, defaultDatatype, DRIVER_INFO_3W, pDefaultDataType)

static_assert(sizeof(platform::DriverInfo2A) == sizeof(DRIVER_INFO_2A));
PROVE_SAME_PLACE(DriverInfo2A, version, DRIVER_INFO_2A, cVersion)
PROVE_SAME_PLACE(DriverInfo2A, name, DRIVER_INFO_2A, pName)
PROVE_SAME_PLACE(DriverInfo2A, environment, DRIVER_INFO_2A, pEnvironment)
PROVE_SAME_PLACE(DriverInfo2A, driverPath, DRIVER_INFO_2A, pDriverPath)
PROVE_SAME_PLACE(DriverInfo2A, dataFile, DRIVER_INFO_2A, pDataFile)
PROVE_SAME_PLACE(DriverInfo2A, configFile, DRIVER_INFO_2A, pConfigFile)

static_assert(sizeof(platform::DriverInfo3A) == sizeof(DRIVER_INFO_3A));
PROVE_SAME_PLACE(DriverInfo3A, version, DRIVER_INFO_3A, cVersion)
PROVE_SAME_PLACE(DriverInfo3A, name, DRIVER_INFO_3A, pName)
PROVE_SAME_PLACE(DriverInfo3A, environment, DRIVER_INFO_3A, pEnvironment)
PROVE_SAME_PLACE(DriverInfo3A, driverPath, DRIVER_INFO_3A, pDriverPath)
PROVE_SAME_PLACE(DriverInfo3A, dataFile, DRIVER_INFO_3A, pDataFile)
PROVE_SAME_PLACE(DriverInfo3A, configFile, DRIVER_INFO_3A, pConfigFile)
PROVE_SAME_PLACE(DriverInfo3A, helpFile, DRIVER_INFO_3A, pHelpFile)
PROVE_SAME_PLACE(DriverInfo3A, dependentFiles, DRIVER_INFO_3A, pDependentFiles)
PROVE_SAME_PLACE(DriverInfo3A, monitorName, DRIVER_INFO_3A, pMonitorName)
PROVE_SAME_PLACE(DriverInfo3A, defaultDatatype, DRIVER_INFO_3A, pDefaultDataType)
