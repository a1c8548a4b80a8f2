/**
 * @file
 * Quillmark identifies fonts: a font file goes in, one specifier for each face comes out.
 *
 * A specifier is a face's names, kind, version, platform, foundry and checksums. Specifiers live in an array
 * that is asked by face index, and that can be stored as XML or as a property list and built again from
 * either.
 *
 * @code
 *   QM_FontArray* array = NULL;
 *   if (QM_CreateSpecifier("/fonts/Garamond.ttf", 0, QM_ATTRIBUTES_ALL, &array) == QM_STATUS_OK) {
 *     char name[256];
 *     if (QM_GetPostScriptName(array, 0, name, sizeof name) == QM_STATUS_OK) puts(name);
 *     QM_SpecifierFree(array);
 *   }
 * @endcode
 *
 * Conventions that hold for every function:
 * - Text is UTF-8 and ends with a NUL. Names come out of font files and may hold any other bytes.
 * - A path is bytes as the file system takes them, and ends with a NUL. Fonts in resources are found by paths
 * in UTF-8 alone. Of a path longer than 1,023 bytes, only the first 1,023 are looked at to tell the extension
 * of a font file that is no collection, and to open its data fork.
 * - Sizes are in bytes and count the NUL. Indexes start at 0.
 * - A pointer may be null only where its description says so; "null gives 1" means that the function looks
 *   and answers QM_STATUS_FAILED.
 * - The checks run in this order: null pointers, index, attribute.
 * - A buffer of fewer than 1 byte (bufferSize 0 or negative) is left as it was, and the status is still 0.
 * Any other receives as much of the text as bufferSize - 1 bytes hold, and a NUL behind it; a longer text is
 * cut without notice, if need be inside a character.
 * - Outputs stay as they were when a function fails, except where its description says that something is
 *   written.
 * - An array belongs to the caller from its creation until QM_SpecifierFree. No query changes it.
 * - Any number of threads may call these functions at once, also on one array, as long as none frees it.
 * - No function aborts or exits. One thing is printed: a message on standard output when a damaged file of
 *   the library's own tables is loaded.
 * - C++ exceptions pass to the caller only where a description says so. A C++ host can catch them by their
 *   standard type; a C host cannot, and so keeps to the conditions that avoid them.
 *
 * How long a text of a face can be, NUL not counted:
 *
 * | text                                                    | most bytes              |
 * |---------------------------------------------------------|-------------------------|
 * | kind, platform                                          | 31                      |
 * | a foundry, style or class of the tables that ship       | 44                      |
 * | names, version: from a name table (TrueType, OpenType)  | 3,069: 1,023 as UTF-8   |
 * | names, version: from the keys of a PostScript header    | 3,999                   |
 * | names: from a FOND resource                             | 765: 255 as UTF-8       |
 * | path of a printer font                                  | the font file's and 256 |
 * | read back from a property list that this library wrote  | 511                     |
 * | read back from any other stored text                    | the length of the text  |
 *
 * So a buffer of 4,096 bytes holds every text of a font file but two: a path that is longer itself, and the
 * family or PostScript name of a face whose printer font gives it in no key, only in the comment
 * "%!PS-AdobeFont-", where nothing but a delimiter ends it. A text that may have been cut fills its buffer:
 * strlen(buffer) is bufferSize - 1. The two stored forms tell their own length.
 */
#ifndef QUILLMARK_QUILLMARK_H_
#define QUILLMARK_QUILLMARK_H_

#include <stdint.h>

#if defined(__GNUC__)
/** Marks the functions that the shared library shows. */
#define QM_EXPORT __attribute__((visibility("default")))
#else
#define QM_EXPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** Version of the library of this header; QM_GetQuillmarkVersion tells that of the one in use. */
#define QM_VERSION_MAJOR 1
/** See QM_VERSION_MAJOR. */
#define QM_VERSION_MINOR 4

/** The ordered list of a file's faces. Its contents are reached through the functions below only. */
typedef struct QM_FontArray QM_FontArray;

/** What a function answers. The numbers never change. */
enum QM_Status {
  QM_STATUS_OK = 0,           /**< Done. */
  QM_STATUS_FAILED = 1,       /**< A required pointer is null, or the failure that the function describes. */
  QM_STATUS_OUT_OF_RANGE = 4, /**< No face of that index, or the buffer is too small. */
  QM_STATUS_NOT_HELD = 5      /**< The specifier does not hold the attribute: it was not requested or read. */
};

/** Attributes of a specifier: the bits of a request, and of what a specifier holds. They never change. */
enum QM_Attribute {
  QM_ATTRIBUTE_POSTSCRIPT_NAME = 0x1,        /**< QM_GetPostScriptName */
  QM_ATTRIBUTE_KIND = 0x2,                   /**< QM_GetKindName */
  QM_ATTRIBUTE_FOUNDRY = 0x4,                /**< QM_GetFoundryName, QM_GetLegacyFoundryName */
  QM_ATTRIBUTE_VERSION = 0x8,                /**< QM_GetVersion */
  QM_ATTRIBUTE_KERNING_CHECKSUM = 0x10,      /**< QM_GetKerningChecksum */
  QM_ATTRIBUTE_OUTLINE_FILE_SIZE = 0x20,     /**< QM_GetOutlineFileSize */
  QM_ATTRIBUTE_FAMILY = 0x1000,              /**< QM_GetFamilyName */
  QM_ATTRIBUTE_OUTLINE_FILE_NAME = 0x2000,   /**< QM_GetPrinterFont, QM_GetWindowsMMFile */
  QM_ATTRIBUTE_CHECKSUM = 0x4000,            /**< QM_GetQuillmarkChecksum */
  QM_ATTRIBUTE_DISPLAY_NAME = 0x8000,        /**< QM_GetDisplayName */
  QM_ATTRIBUTE_FULL_NAME = 0x10000,          /**< QM_GetFullName */
  QM_ATTRIBUTE_LEGACY_CHECKSUM = 0x20000,    /**< QM_GetLegacyQuillmarkChecksum */
  QM_ATTRIBUTE_PLATFORM = 0x40000,           /**< QM_GetPlatform */
  QM_ATTRIBUTE_WINDOWS_MM_FILE = 0x80000,    /**< QM_GetWindowsMMFile */
  QM_ATTRIBUTE_WINDOWS_FULL_NAME = 0x100000, /**< QM_GetWindowsFullName */
  QM_ATTRIBUTES_ALL = 0x1FF03F               /**< Every attribute above. */
};

/**
 * @name Arrays: made from files, freed, counted
 * @{
 */

/**
 * Tells the version of the library.
 *
 * @param[out] major  receives 1; may be null: nothing is written then
 * @param[out] minor  receives 4; may be null: nothing is written then
 * @par Threads
 * Any number.
 */
QM_EXPORT void QM_GetQuillmarkVersion(uint32_t* major, uint32_t* minor);

/**
 * Reads a font file and makes a specifier for each face in it.
 *
 * Faces that cannot be read are left out; of faces with one PostScript name one stays. Only regular files are
 * read, and a symbolic link is followed. An attribute that is not requested is not held by the specifiers.
 *
 * Files that may be opened beside the font file NAME, all of them only to read:
 * - what may hold its resource fork or its type and creator: NAME/..namedfork/rsrc, NAME/rsrc, ._NAME,
 *   .AppleDouble/NAME and resource.frk/NAME in its folder, and the file for NAME below __MACOSX in its folder
 *   and in each folder above. Its extended attributes are read, too;
 * - for a resource file, the printer fonts that its FOND resources name, in its own folder, with the same
 *   places for each of them;
 * - once a process, the library's own tables.
 *
 * What a request costs: QM_ATTRIBUTE_CHECKSUM and QM_ATTRIBUTE_LEGACY_CHECKSUM read and sum every byte of the
 * file, and of the printer fonts; QM_ATTRIBUTE_KERNING_CHECKSUM every byte of a collection. Without these
 * only headers, lists of tables and names are read, of a resource file the whole outlines, too.
 * QM_ATTRIBUTE_FOUNDRY searches the header of a printer font for known makers; every other bit copies what
 * was read anyway.
 *
 * The work has a bound that grows with the bytes of the files. A file that makes its faces share their bytes
 * again and again reaches it: the call then ends with the faces found first, and status 0, or 1 without any.
 *
 * Request QM_ATTRIBUTE_PLATFORM together with QM_ATTRIBUTE_CHECKSUM: the checksum of a cross-platform font is
 * that of its data fork only when the platform was asked for. The kerning checksum of a face that is no
 * collection face is that of its FOND resource, and 0 without one.
 *
 * @param      path      path of the file; null gives 1
 * @param      reserved  not looked at; pass 0
 * @param      request   the wanted attributes, a sum of QM_Attribute bits; other bits are only stored
 * @param[out] outArray  receives the array on status 0, which the caller frees; null gives 1
 * @retval 0  at least one face was read
 * @retval 1  null argument, or a file without a face that can be read, a missing one included; *outArray is
 *            as it was
 * @par Exceptions
 * std::bad_alloc and other standard errors of a system without resources; nothing leaks.
 * @par Threads
 * Any number.
 */
QM_EXPORT int32_t QM_CreateSpecifier(const char* path, int32_t reserved, uint32_t request,
                                     QM_FontArray** outArray);

/**
 * Frees an array and all that it holds.
 *
 * @param array  an array this library made, gone afterwards; null gives 1
 * @retval 0  freed
 * @retval 1  null argument
 * @par Threads
 * Any number on different arrays; no other call on this one.
 */
QM_EXPORT int32_t QM_SpecifierFree(QM_FontArray* array);

/**
 * Counts the faces of an array.
 *
 * @param      array  an array this library made; null gives 1
 * @param[out] count  receives the number of faces on status 0; null gives 1
 * @retval 0  counted
 * @retval 1  null argument; *count is as it was
 * @par Threads
 * Any number on one array that nobody frees.
 */
QM_EXPORT int32_t QM_GetFontCount(const QM_FontArray* array, uint32_t* count);

/**
 * Finds the first face of a FOND resource and style.
 *
 * @param      array   an array this library made; null gives 1
 * @param      fondID  resource ID of the FOND; -1 for faces without one, 0 for faces of stored forms
 * @param      style   classic style code (bold 1, italic 2, underline 4, outline 8, shadow 16, condense 32,
 *                     extend 64); 0 for faces without a FOND, -1 for those of collections
 * @param[out] index   receives the face's index, or 0 on any failure; not null, and not tested
 * @retval 0  found
 * @retval 1  null array, or no such face; *index is 0
 * @par Threads
 * Any number on one array that nobody frees.
 */
QM_EXPORT int32_t QM_GetFontIndexForFONDResourceID(const QM_FontArray* array, int16_t fondID, int16_t style,
                                                   uint32_t* index);
/** @} */

/**
 * @name Stored forms
 * @{
 */

/**
 * Writes the specifiers as XML text.
 *
 * The text keeps kind, PostScript name, canonical foundry, family, version, both current checksums, size and
 * name of the outline file. Values are cut at 511 bytes and stand unescaped.
 *
 * @param         array   an array this library made; null gives 1
 * @param[out]    buffer  receives the text, cut to fit, and a NUL, on every status but that of a null
 *                        argument; untouched when the size is 0; null gives 1
 * @param[in,out] length  size of buffer on entry; size that the whole text needs, NUL included, on return;
 *                        null gives 1
 * @retval 0  the whole text was written
 * @retval 1  null argument, with nothing written; or an array without faces: its empty document was written
 * @retval 4  the text does not fit; its beginning was written, *length says what is needed
 * @par Exceptions
 * std::bad_alloc; buffer may then hold the text's beginning.
 * @par Threads
 * Any number on one array that nobody frees.
 */
QM_EXPORT int32_t QM_GetXMLRepresentation(const QM_FontArray* array, char* buffer, uint32_t* length);

/**
 * Makes an array from the text that QM_GetXMLRepresentation wrote.
 *
 * Tags are searched for, not parsed: a block without a tag takes the value of the next one in the text. A
 * checksum above 7FFFFFFF reads as 7FFFFFFF. Compare stored texts, not arrays made from them. A tag that is
 * not closed in its block takes all text up to the next closing tag. A text whose faces share its bytes in
 * this way again and again is read only as far as time and memory stay within a multiple of its length;
 * values of their own never reach that bound.
 *
 * @param      text      the document; null gives 1
 * @param[out] outArray  receives the array on status 0, which the caller frees; null gives 1
 * @retval 0  at least one whole face was read
 * @retval 1  null argument; *outArray is as it was
 * @retval 4  no whole face in the text; *outArray is as it was
 * @par Exceptions
 * std::bad_alloc; nothing leaks.
 * @par Threads
 * Any number.
 */
QM_EXPORT int32_t QM_CreateSpecifierFromXML(const char* text, QM_FontArray** outArray);

/**
 * Writes the specifiers as the text of an XML property list: an array of dictionaries of strings.
 *
 * It keeps the same values as the XML form. A value that is not valid UTF-8 is written as its longest valid
 * beginning. For a face without a checksum, "Checksum" repeats the kerning checksum.
 *
 * @param         array   an array this library made; null gives 1
 * @param[out]    buffer  receives the text, cut to fit, and a NUL, on every status but that of a null
 *                        argument; untouched when the size is 0; null gives 1
 * @param[in,out] length  size of buffer on entry; size that the whole text needs, NUL included, on return;
 *                        null gives 1
 * @retval 0  the whole text was written
 * @retval 1  null argument, with nothing written; or an array without faces: its empty list was written
 * @retval 4  the text does not fit; its beginning was written, *length says what is needed
 * @par Exceptions
 * std::bad_alloc; buffer may then hold the text's beginning.
 * @par Threads
 * Any number on one array that nobody frees.
 */
QM_EXPORT int32_t QM_GetPropertyListRepresentation(const QM_FontArray* array, char* buffer, uint32_t* length);

/**
 * Makes an array from the text that QM_GetPropertyListRepresentation wrote.
 *
 * Missing keys, and values that are no strings, leave their attribute not held. A checksum above 7FFFFFFF
 * reads as 7FFFFFFF.
 *
 * @param      text      the property list, shorter than 2 GiB; null gives 1
 * @param[out] outArray  receives the array on status 0, which the caller frees; null gives 1
 * @retval 0  at least one element was read
 * @retval 1  null argument, or a text that is not a property list with an array of at least one element at
 *            its top; *outArray is as it was
 * @par Exceptions
 * std::bad_alloc; nothing leaks.
 * @par Threads
 * Any number.
 */
QM_EXPORT int32_t QM_CreateSpecifierFromPropertyList(const char* text, QM_FontArray** outArray);
/** @} */

/**
 * @name Texts of one face
 *
 * Twelve functions of one shape: (array, index, buffer, bufferSize).
 *
 * - array: an array this library made; null gives 1.
 * - index: the face, from 0; one that is not below the count gives 4.
 * - buffer: receives the text on status 0; null gives 1.
 * - bufferSize: bytes in buffer, NUL included.
 * - Status 0: copied. 5: the specifier does not hold the attribute.
 * - No exception. Any number of threads on one array that nobody frees.
 *
 * | function                | where it differs                                                          |
 * |-------------------------|---------------------------------------------------------------------------|
 * | QM_GetKindName          | a bad index throws std::out_of_range, never 4                             |
 * | QM_GetFamilyName        | a bad index throws std::out_of_range, never 4                             |
 * | QM_GetWindowsFullName   | 5 also when its name is empty and the full name is not held               |
 * | QM_GetFoundryName       | std::bad_alloc; buffer is as it was                                       |
 * | QM_GetLegacyFoundryName | std::bad_alloc; buffer is as it was                                       |
 * | QM_GetWindowsMMFile     | 1 for a bad index, an outline file name not held or not of a .pfb file;   |
 * |                         | std::bad_alloc; buffer is as it was                                       |
 * @{
 */

/**
 * Copies the kind of one face: "TrueType", "OpenType - TT", "OpenType - PS", "PostScript",
 * "PostScript - MM", "TrueType Collection", "CID" or "OCF".
 *
 * A bad index throws std::out_of_range.
 */
QM_EXPORT int32_t QM_GetKindName(const QM_FontArray* array, uint32_t index, char* buffer, int32_t bufferSize);

/**
 * Copies the family name of one face.
 *
 * A bad index throws std::out_of_range.
 */
QM_EXPORT int32_t QM_GetFamilyName(const QM_FontArray* array, uint32_t index, char* buffer,
                                   int32_t bufferSize);

/** Copies the PostScript name of one face. */
QM_EXPORT int32_t QM_GetPostScriptName(const QM_FontArray* array, uint32_t index, char* buffer,
                                       int32_t bufferSize);

/** Copies the full name of one face. */
QM_EXPORT int32_t QM_GetFullName(const QM_FontArray* array, uint32_t index, char* buffer, int32_t bufferSize);

/** Copies the display name of one face. */
QM_EXPORT int32_t QM_GetDisplayName(const QM_FontArray* array, uint32_t index, char* buffer,
                                    int32_t bufferSize);

/** Copies the platform of one face: "mac" or "crossplatform". */
QM_EXPORT int32_t QM_GetPlatform(const QM_FontArray* array, uint32_t index, char* buffer, int32_t bufferSize);

/**
 * Copies the path of the printer font file that holds the outlines of one face; empty when they are in the
 * font file itself.
 */
QM_EXPORT int32_t QM_GetPrinterFont(const QM_FontArray* array, uint32_t index, char* buffer,
                                    int32_t bufferSize);

/** Copies the full name that Windows shows for one face, or else its full name. */
QM_EXPORT int32_t QM_GetWindowsFullName(const QM_FontArray* array, uint32_t index, char* buffer,
                                        int32_t bufferSize);

/**
 * Copies the number in the version text of one face: from "Version 2.100;PS 2.0" the "2.100". Digits, "." and
 * "-" count; the text is empty when no digit stands in it.
 */
QM_EXPORT int32_t QM_GetVersion(const QM_FontArray* array, uint32_t index, char* buffer, int32_t bufferSize);

/**
 * Copies the canonical name of the maker of one face; "--" when the library does not know it. A face of
 * platform "mac" is answered as by QM_GetLegacyFoundryName.
 */
QM_EXPORT int32_t QM_GetFoundryName(const QM_FontArray* array, uint32_t index, char* buffer,
                                    int32_t bufferSize);

/**
 * Copies the canonical name of the maker of one face by the older rule, in which the creator codes of its
 * files count before the maker's text; "--" when the library does not know it.
 */
QM_EXPORT int32_t QM_GetLegacyFoundryName(const QM_FontArray* array, uint32_t index, char* buffer,
                                          int32_t bufferSize);

/** Copies the name of the Windows metrics file (.mmm) of a Multiple Master printer font (.pfb). */
QM_EXPORT int32_t QM_GetWindowsMMFile(const QM_FontArray* array, uint32_t index, char* buffer,
                                      int32_t bufferSize);
/** @} */

/**
 * @name Numbers of one face
 *
 * Four functions of one shape: (array, index, value).
 *
 * - array: an array this library made; null gives 1.
 * - index: the face, from 0; one that is not below the count gives 4.
 * - value: receives the number on status 0; null gives 1.
 * - Status 0: given. 5: the specifier does not hold the attribute.
 * - No exception. Any number of threads on one array that nobody frees.
 * @{
 */

/** Gives the kerning checksum of one face. */
QM_EXPORT int32_t QM_GetKerningChecksum(const QM_FontArray* array, uint32_t index, uint32_t* value);

/** Gives the checksum that identifies the data of one face. */
QM_EXPORT int32_t QM_GetQuillmarkChecksum(const QM_FontArray* array, uint32_t index, uint32_t* value);

/** Gives the identifying checksum of the earlier scheme of one face; 0 for faces of collections. */
QM_EXPORT int32_t QM_GetLegacyQuillmarkChecksum(const QM_FontArray* array, uint32_t index, uint32_t* value);

/**
 * Gives the size of the file that holds the outlines of one face: the printer font file, or else the font
 * file; both forks, modulo 2^32. 0 for faces of collections and when the file is missing.
 */
QM_EXPORT int32_t QM_GetOutlineFileSize(const QM_FontArray* array, uint32_t index, uint32_t* value);
/** @} */

/**
 * @name Names without an array
 * @{
 */

/**
 * Reads the styles of a font out of its names: "Bold", "Condensed", ...
 *
 * @param      primaryName    the name that counts first; null gives 1
 * @param      secondaryName  the name that counts next; null gives 1
 * @param      maxStyles      the most styles wanted; styleNames holds that many pointers, and at least one
 * @param      bufferSize     bytes in each buffer of styleNames, NUL included
 * @param[out] count          receives how many styles were found, at most maxStyles; as it was when the names
 *                            tell no style; null gives 1
 * @param[out] styleNames     the first *count buffers receive a style's name each; those that are null are
 *                            passed over; null, or a null first buffer, gives 1
 * @retval 0  read; without a style, nothing was written: set *count to 0 before
 * @retval 1  null argument; nothing was written
 * @par Exceptions
 * std::runtime_error for a malformed keyword table; std::bad_alloc; nothing was written.
 * @par Threads
 * Any number.
 */
QM_EXPORT int32_t QM_GetStyles(const char* primaryName, const char* secondaryName, uint32_t maxStyles,
                               int32_t bufferSize, uint32_t* count, char** styleNames);

/**
 * Copies the typographic class of a family; "--" when the library knows none.
 *
 * @param      family      family name; null gives 1
 * @param      alternate   asked for when the family has no class; may be null
 * @param[out] buffer      receives the text on status 0; null gives 1
 * @param      bufferSize  bytes in buffer, NUL included
 * @retval 0  copied
 * @retval 1  null argument
 * @par Exceptions
 * std::bad_alloc; buffer is as it was.
 * @par Threads
 * Any number.
 */
QM_EXPORT int32_t QM_GetClassificationFromFamily(const char* family, const char* alternate, char* buffer,
                                                 int32_t bufferSize);

/**
 * Copies the PostScript name out of the name table of an sfnt font in memory.
 *
 * @param      data          the font; may be null: nothing is written then
 * @param      size          bytes in data
 * @param      resourceFile  null: nothing is written; else not followed
 * @param      fondHandle    null: nothing is written; else not followed
 * @param      faceIndex     not looked at; pass 0
 * @param[out] buffer        receives the name; as it was when the font has none, also when reading its name
 *                           table takes more work than its size allows; may be null
 * @param      bufferSize    bytes in buffer, NUL included
 * @par Exceptions
 * std::bad_alloc; buffer is as it was.
 * @par Threads
 * Any number.
 */
QM_EXPORT void QM_GetPostScriptNameFromNamesTable(const char* data, uint32_t size, void* resourceFile,
                                                  char** fondHandle, int32_t faceIndex, char* buffer,
                                                  int32_t bufferSize);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
