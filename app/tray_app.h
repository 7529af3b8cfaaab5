// The process: from its command line to its exit code.
#pragma once

#include <cstdint>
#include <memory>

#include "app/cmd_line_info.h"
#include "app/main_frame.h"

namespace vgl {

class CTrayIconApp {
 public:
  CTrayIconApp() = default;
  CTrayIconApp(const CTrayIconApp&) = delete;
  CTrayIconApp& operator=(const CTrayIconApp&) = delete;

  // Starts the agent of one printer: reads the option text, waits for a predecessor, makes the
  // frame and its window. `commandLine` is the text behind the program's name. True: the message
  // loop is to run. False: the process ends; nothing was shown unless CMainFrame::StartUp showed
  // it.
  bool InitInstance(const char16_t* commandLine);

  // Handles messages until WM_QUIT, or until messages can't be had any more.
  void Run();

  // The last step of every run, also of one that never got to the loop.
  void ExitInstance();

  // The low half of the last message's wParam: what PostQuitMessage was given, 0 without a loop.
  std::int32_t ExitCode() const { return static_cast<std::int32_t>(m_msg.wParam & 0xFFFFFFFF); }

  // Does what a result of CMainFrame::StartUp asks for. True: the message loop is to run.
  bool ActOnStartUp(std::int32_t result, CCmdLineInfo& cmdInfo);

  // Removes the values of the user's Run key that would start this agent again: those named after
  // the printer and after its record; without a printer name, the first one whose text holds
  // `fileName`.
  static void DeleteStartupReg(const char16_t* printerName, const char16_t* fileName);

  // The same for a printer, or a port, that is gone: the values named after it and after its
  // record.
  static void DeleteRunValues(const char16_t* name, bool isPort);

  // Deletes the parameter file that the Run value of that name keeps for each logon, if the value
  // names one that is there.
  static void DelOldIconRegFile(const char16_t* name);

 private:
  platform::Message m_msg;
  std::unique_ptr<CMainFrame> m_frame;  // the one that g_pMainFrame points to
};

// A whole run of the agent; the result is the process's exit code.
std::int32_t TrayAgentMain(const char16_t* commandLine);

}  // namespace vgl
