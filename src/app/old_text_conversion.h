// What a store of a release before the conversion of rich text is opened with.
#pragma once

#include "store/reminder_store.h"

namespace tockwise {

/// Converts older archives to today's form, pictures scaled as for any text. Any one thread.
OldTextConversion oldTextConversion();

} // namespace tockwise
