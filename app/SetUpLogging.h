#pragma once

// Makes the process's log target and logger, installs the application's log function and writes the start-up banner.
// Called once, on the start-up thread. A folder or file that cannot be had is the library's to handle: start-up goes
// on. What is made here lives as long as the process. Throws only when memory is exhausted.
void SetUpLogging();
