#pragma once

/** Keys of the command registry; 1 and 2 have no command. */
enum CommandType {
    CONVERSION = 0,
    EDIT = 3,
    COMMAND_LINE = 4
};

/** A long-lived user action: the engine, the editor, an external process. */
class Command
{
public:
    virtual ~Command() = default;
    virtual void execute() = 0;
};
