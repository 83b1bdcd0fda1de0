// The part of the Windows Runtime for C++ that does not come from the metadata.
#pragma once
#include "winrt/base/activation.h"
#include "winrt/base/convert.h"
#include "winrt/base/handle.h"
#include "winrt/base/resume.h"
#include "winrt/base/time.h"
