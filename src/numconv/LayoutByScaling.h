// f, e and g text of ordinary values, laid out in registers.
#ifndef TV_LAYOUT_BY_SCALING_H
#define TV_LAYOUT_BY_SCALING_H

/// What tvFltToF, tvFltToE and tvFltToG write, `precision` not below 0. False with nothing
/// written for everything that is not ordinary: zeros, words, more than 17 digits, styles
/// other than 0.
bool fixedText(char* out, double value, int precision);
bool exponentText(char* out, double value, int precision, int expChar);
bool generalText(char* out, double value, int precision, int expChar, int style);

#endif
