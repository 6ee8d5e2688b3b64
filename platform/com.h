// The one header through which everything above the platform layer reaches
// the component runtime: the real SDK on Windows, the portable stand-in elsewhere.
#pragma once

#ifdef _WIN32
#include <windows.h>
#include <ole2.h>
#include <oleauto.h>
#include <oaidl.h>
#include <ocidl.h>
#include <dispex.h>
#else
#include "platform/native/oleauto.h"
#endif

#include "platform/ansi_text.h"
#include "platform/class_registry.h"
#include "platform/registry.h"
#include "platform/invalid_parameter.h"
#include "platform/library_loader.h"
#include "platform/module_resources.h"
#include "platform/type_library.h"
