#pragma once
// The demonstration's second window: text buttons, check boxes, a radio group and the
// skinned message dialogs.

// Opens the window below the first one; it lives until the program ends.
void ShowButtonsDemo();
