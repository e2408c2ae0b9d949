#pragma once

/**
 * Pauses, resumes and ends the conversion engine of one run: the engine
 * process and whatever it started, found by process id, never by name, so the
 * engines of other windows and other users are left alone.
 *
 * Off Windows the engine runs in a process group of its own (see
 * makeGroupLeader) and the signals go to that group; on Windows the engine's
 * descendants are found through their parent process ids.
 */
namespace EngineSuspender {

/** Suspends (or resumes) the engine @p processId and its descendants. */
bool suspendTree(long long processId, bool suspend);
/** Ends the engine @p processId and its descendants by force. */
bool terminateTree(long long processId);

/** Suspends or resumes the threads of one process (Windows). */
void suspendOrResume(unsigned long processId, bool suspend);

/**
 * Off Windows: called in the child between fork and exec, makes it the leader
 * of a process group of its own, and widens its output pipe where the system
 * allows, so that a fast engine waits less for the window to read.
 * Async-signal-safe.
 */
void prepareChild();
/** The parent's half of the same, against a signal sent before the child got there. */
void adoptGroup(long long processId);

} // namespace EngineSuspender
