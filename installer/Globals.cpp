// The process-wide objects, in the order in which they are built before main; destroyed in reverse.
// Nothing else may stand here, and this file's object must be linked last: the constructors send
// messages, and a class is known to the runtime only once its own file has been initialised.
