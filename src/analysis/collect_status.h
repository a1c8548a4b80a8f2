// CollectStatus: whether the data of a face could be collected (face_collector.h, postscript_metadata.h).
#ifndef QUILLMARK_ANALYSIS_COLLECT_STATUS_H_
#define QUILLMARK_ANALYSIS_COLLECT_STATUS_H_

namespace quillmark {

enum CollectStatus : int {
  kCollected = 0,
  kNoFontData = 3,          // no sfnt bytes, or no usable name table
  kPrinterFontMissing = 6,  // the outlines of a PostScript face are not where its family names them
  kUndecided = -1,          // the platform cannot be determined, or no PostScript header was read
};

}  // namespace quillmark

#endif
