// What the commands of a catalogue do. A catalogue keeps what identify gives of all files below its roots, so
// that files are read again only when they changed. A build without SQLite has the same functions, which say
// that they are missing. Each returns an exit status. Tests: tests/cli/catalogue_test.py.
#ifndef QUILLMARK_TOOL_CATALOGUE_CATALOGUE_H_
#define QUILLMARK_TOOL_CATALOGUE_CATALOGUE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "files/identify_files.h"
#include "library/library.h"
#include "output/output.h"

namespace quillmark::tool {

struct CatalogueUpdate {
  std::string catalogue;
  std::vector<std::string> roots;  // empty: those that the catalogue has
  bool ignore_ctime = false, ignore_inode = false;
  bool accept_unmounted = false;  // files are gone that were in file systems that are mounted no more
  FilesOptions work;              // jobs, progress, quiet
  std::string tables;             // which knowledge tables are in use
};
int UpdateCatalogue(const CatalogueUpdate& update);

int ListCatalogue(const std::string& catalogue, const OutputForm& form);

struct ChangesQuery {
  std::string catalogue;
  std::optional<std::int64_t> since;  // a run; without one only the last run counts
  std::string format;                 // text or json
};
int TellChanges(const ChangesQuery& query);

int TellCatalogue(const std::string& catalogue, const std::string& format);

struct CatalogueCheck {
  std::string catalogue;
  std::optional<std::int64_t> sample;  // how many files; all without it
  FilesOptions work;
  std::string tables;  // which knowledge tables are in use
};
int VerifyCatalogue(const CatalogueCheck& check);

// find, in a catalogue or in files and folders.
struct NameSearch {
  std::string catalogue;            // empty: in the places
  std::vector<std::string> places;  // files and folders
  std::vector<std::string> names;
  std::string names_from;  // file of further names, "-" for standard input; empty without one
  bool names_are_nul_separated = false;
  bool like = false;  // guesses for what is missing
  std::string format = "table";
  FilesOptions work;
};
int FindNames(const NameSearch& search);

// Adds the files of a catalogue to a library, in the order of list; no font is read for what lists show of
// them. Sets the roots of this machine.
FilesOutcome AddFromCatalogue(const std::string& catalogue, Library& library,
                              std::vector<std::string>& roots);

struct CatalogueMerge {
  struct Part {
    std::string label, catalogue;
  };
  std::string catalogue;
  std::vector<Part> parts;  // no label twice
  std::string tables;       // which knowledge tables are in use
};
int MergeCatalogues(const CatalogueMerge& merge);

// "SQLite 3.40.1", by which catalogues are kept; empty in a build without it.
std::string CatalogueSupport();

}  // namespace quillmark::tool

#endif
