// Marks what the shared library KelvarinCore offers to programs and plug-ins.
#pragma once

#include <QtGlobal>

#if defined(KelvarinCore_EXPORTS)
#define KELVARIN_CORE Q_DECL_EXPORT
#else
#define KELVARIN_CORE Q_DECL_IMPORT
#endif
