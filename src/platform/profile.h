// One value of an INI file, read by the platform's rules.
//
// Section and key are compared without regard to ASCII case and without the blanks around them; the first section of a
// name and the first key in it win. Blanks around a value are cut, one pair of equal quotes around it is removed. A line
// that starts with ";" is a comment; a ";" later belongs to the value. Lines end in CR LF, LF or CR. The text is GBK, or what
// a mark at its start announces: UTF-8 or UTF-16. Of a line the first 4095 bytes count.
#pragma once

namespace tavimo::platform {

// Copies the value of a key, or fallback (null: empty) when file, section or key is missing, into text: at most size - 1
// bytes, cut before a GBK character that does not fit, and a zero. Returns the bytes without the zero; 0 for size < 1,
// and text is then not written. The path must name a folder: on the platform a bare name means another place.
int GetProfileText(const char* section, const char* key, const char* fallback, char* text, int size,
                   const char* path) noexcept;

// The folder where the platform keeps profiles that are named without a folder, with its separator: the Windows folder;
// elsewhere "tavimo" in the user's folder of settings (XDG_CONFIG_HOME, else .config at home). Returns the bytes without
// the zero; 0, and an empty text, when there is none or size is too small.
int GetProfileFolder(char* path, int size) noexcept;

}  // namespace tavimo::platform
