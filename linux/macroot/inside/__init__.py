"""What goes on inside a Mac root while a program runs there."""
