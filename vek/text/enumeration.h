/*
 * How the enumerations of messages are declared: each is one list of constants and of the names that stand for them in
 * texts. C hosts get the constants from it, C++ hosts the type, the library the names: nothing can disagree. Values
 * count from 0 in the order of the list. Usable from C99 and C++.
 *
 * A list is a macro, since in C nothing else serves for both.
 */
#ifndef VEK_ENUMERATION_H
#define VEK_ENUMERATION_H

#define VEK_CONSTANT_OF(constant, name) constant,
#define VEK_NAME_OF(constant, name) name,

/* The two kinds of a range. */
#define VEK_RANGE_TYPES(one) one(VEK_RANGE_DISCRETE, "discrete_e") one(VEK_RANGE_CONTINUOUS, "continuous_e")

enum vekRangeType { VEK_RANGE_TYPES(VEK_CONSTANT_OF) };

#endif
