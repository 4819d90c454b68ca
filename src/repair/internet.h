// Whether the internet can be reached.
#pragma once

// Tests the presence address; the result also goes into State().bInternetPresent. Handles window events.
bool IsInternetPresent();
