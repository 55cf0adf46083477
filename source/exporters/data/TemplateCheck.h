#pragma once

#include <QString>

/// Looks for what would take the template library down, and the whole program with it:
/// - tags that nest so deep, or are so long, that the library's recursion runs out of stack;
/// - {% regroup %} by a filtered property;
/// - the filter divisibleby with anything but a whole number above 0, written out without quotes: the library
///   divides by what it makes of the argument, and that is 0 for most others;
/// - {% range %} with a step that isn't a whole number above 0, written out: it might never end;
/// - the filters truncatewords, slice and get_digit with arguments that lead them beyond their text;
/// - filters that are told to fill up to 100000 characters or more, written out.
/// Gives a sentence with the line (counted from 1) and the tag; empty if there is nothing of the kind. Text
/// inside comments counts too: what is a comment depends on what surrounds it, and a guard does better not to
/// guess.
QString templateFault(const QString& text);
