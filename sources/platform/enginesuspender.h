#pragma once

/**
 * Pauses and resumes the conversion engine: every process of the current user
 * whose executable is the engine's is suspended or resumed as a whole.
 */
namespace EngineSuspender {

/**
 * Suspends (or resumes) every process named @p executableName ("Morvane.exe"
 * on Windows; on POSIX the engine program's file name). Returns how many
 * processes were reached; a failing system call is reported on stderr.
 */
int forEachEngineProcess(const char *executableName, bool suspend);

/** Suspends or resumes the threads of one process. */
void suspendOrResume(unsigned long processId, bool suspend);

} // namespace EngineSuspender
