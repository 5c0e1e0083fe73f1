// vellicor/export/runnable/runnable_dialect.cpp — which form of scripts is wanted.
#include "vellicor/export/runnable/runnable_dialect.h"

#include "vellicor/platform/preference_keys.h"
#include "vellicor/platform/preferences.h"

namespace vellicor {

bool wantsRunnableScripts() { return Preferences::shared().boolForKey(prefs::runnableScripts); }

}  // namespace vellicor
