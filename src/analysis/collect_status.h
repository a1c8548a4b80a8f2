// What the collectors of a face's data answer.
#ifndef QUILLMARK_ANALYSIS_COLLECT_STATUS_H_
#define QUILLMARK_ANALYSIS_COLLECT_STATUS_H_

namespace quillmark {

enum CollectStatus : int {
  kCollected = 0,
  kNoFontData = 3,          // no sfnt bytes, or no usable name table
  kPrinterFontMissing = 6,  // the outlines of a PostScript face are not where its family names them
  kUndecided = -1,          // no platform can be told, or no PostScript header read
};

}  // namespace quillmark

#endif
