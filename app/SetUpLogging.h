#pragma once

// Creates the log target and the logger of the process, installs the application's log function and writes the start-up
// banner. Called once, on the start-up thread. When the folder or file is not available, start-up continues without a
// log. The objects live until the process ends. Throws only when memory is exhausted.
void SetUpLogging();
