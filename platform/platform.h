// The operating system as the agent sees it: one header a service, gathered here.
//
// The operations carry the names of the Windows functions that they stand for, take char16_t text
// with a terminator, and give results in the system's own convention. The operating system is
// ambient, as in life: code asks Os(). Which backend answers is settled by what a program is linked
// with: platform/win32 or platform/sim.
#pragma once

#include "platform/drawing.h"
#include "platform/files.h"
#include "platform/kernel_objects.h"
#include "platform/menus.h"
#include "platform/modules.h"
#include "platform/nls.h"
#include "platform/processes.h"
#include "platform/profile_files.h"
#include "platform/registry.h"
#include "platform/resources.h"
#include "platform/sections.h"
#include "platform/security.h"
#include "platform/shell.h"
#include "platform/spooler.h"
#include "platform/system_info.h"
#include "platform/types.h"
#include "platform/windowing.h"

namespace platform {

struct Platform {
  Registry& registry;
  Files& files;
  ProfileFiles& profiles;
  KernelObjects& objects;
  Processes& process;
  Modules& modules;
  Windowing& windowing;
  Shell& shell;
  SystemInfo& system;
  NationalLanguage& nls;
  Sections& sections;
  Spooler& spooler;
  Security& security;
  Resources& resources;
  Menus& menus;
  Drawing& drawing;
};

// The system that the calling thread runs on. On the simulated machine a thread that belongs to no
// simulated process has none, and asking is a programming error that ends the program.
const Platform& Os();

}  // namespace platform
