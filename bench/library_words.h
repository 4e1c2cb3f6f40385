// SPDX-License-Identifier: MIT
// What the made libraries are put together from.
#pragma once

#include <array>
#include <string_view>

namespace tarvel::bench {

struct JournalName {
  std::string_view full;
  std::string_view abbreviated;
};

inline constexpr std::array<JournalName, 48> kJournals{{
    {"Journal of Chemical Physics", "J. Chem. Phys."},
    {"Physical Review Letters", "Phys. Rev. Lett."},
    {"Journal of the American Chemical Society", "J. Am. Chem. Soc."},
    {"Chemical Physics Letters", "Chem. Phys. Lett."},
    {"Journal of Physical Chemistry A", "J. Phys. Chem. A"},
    {"Journal of Physical Chemistry B", "J. Phys. Chem. B"},
    {"Journal of Physical Chemistry C", "J. Phys. Chem. C"},
    {"Physical Chemistry Chemical Physics", "Phys. Chem. Chem. Phys."},
    {"Angewandte Chemie International Edition", "Angew. Chem. Int. Ed."},
    {"Nature", "Nature"},
    {"Science", "Science"},
    {"Proceedings of the National Academy of Sciences", "Proc. Natl. Acad. Sci."},
    {"Physical Review A", "Phys. Rev. A"},
    {"Physical Review B", "Phys. Rev. B"},
    {"Physical Review E", "Phys. Rev. E"},
    {"Reviews of Modern Physics", "Rev. Mod. Phys."},
    {"Molecular Physics", "Mol. Phys."},
    {"Journal of Molecular Spectroscopy", "J. Mol. Spectrosc."},
    {"Journal of Computational Chemistry", "J. Comput. Chem."},
    {"Journal of Chemical Theory and Computation", "J. Chem. Theory Comput."},
    {"Theoretical Chemistry Accounts", "Theor. Chem. Acc."},
    {"International Journal of Quantum Chemistry", "Int. J. Quantum Chem."},
    {"Chemical Reviews", "Chem. Rev."},
    {"Chemical Society Reviews", "Chem. Soc. Rev."},
    {"Accounts of Chemical Research", "Acc. Chem. Res."},
    {"Astrophysical Journal", "Astrophys. J."},
    {"Astronomy and Astrophysics", "Astron. Astrophys."},
    {"Applied Physics Letters", "Appl. Phys. Lett."},
    {"Journal of Applied Physics", "J. Appl. Phys."},
    {"Optics Letters", "Opt. Lett."},
    {"Optics Express", "Opt. Express"},
    {"Surface Science", "Surf. Sci."},
    {"Langmuir", "Langmuir"},
    {"Macromolecules", "Macromolecules"},
    {"Inorganic Chemistry", "Inorg. Chem."},
    {"Organometallics", "Organometallics"},
    {"Biophysical Journal", "Biophys. J."},
    {"Journal of Molecular Biology", "J. Mol. Biol."},
    {"Biochemistry", "Biochemistry"},
    {"Nucleic Acids Research", "Nucleic Acids Res."},
    {"Review of Scientific Instruments", "Rev. Sci. Instrum."},
    {"Analytical Chemistry", "Anal. Chem."},
    {"Communications of the ACM", "Commun. ACM"},
    {"Computer Physics Communications", "Comput. Phys. Commun."},
    {"New Journal of Physics", "New J. Phys."},
    {"Journal of Physics: Condensed Matter", "J. Phys.: Condens. Matter"},
    {"Advances in Chemical Physics", "Adv. Chem. Phys."},
    {"Annual Review of Physical Chemistry", "Annu. Rev. Phys. Chem."},
}};

/// A family name in plain letters, as keys have it, and as a value has it. The last rows hold bytes
/// from 128 on; only the entries that are meant to hold some use them.
struct FamilyName {
  std::string_view plain;
  std::string_view written;
};
inline constexpr std::array<FamilyName, 40> kFamilyNames{{
    {"Smith", "Smith"},
    {"Miller", "Miller"},
    {"Garcia", "Garc{\\'i}a"},
    {"Mueller", "M{\\\"u}ller"},
    {"Tanaka", "Tanaka"},
    {"Chen", "Chen"},
    {"Wang", "Wang"},
    {"Kowalski", "Kowalski"},
    {"Ivanov", "Ivanov"},
    {"Rossi", "Rossi"},
    {"Dubois", "Dubois"},
    {"Jensen", "Jensen"},
    {"Larsson", "Larsson"},
    {"Novak", "Nov{\\'a}k"},
    {"Schroeder", "Schr{\\\"o}der"},
    {"deVries", "de Vries"},
    {"vanderBerg", "van der Berg"},
    {"Okafor", "Okafor"},
    {"Patel", "Patel"},
    {"Kim", "Kim"},
    {"Nguyen", "Nguyen"},
    {"Silva", "Silva"},
    {"Cohen", "Cohen"},
    {"Brown", "Brown"},
    {"Wilson", "Wilson"},
    {"Fischer", "Fischer"},
    {"Weber", "Weber"},
    {"Bernard", "Bernard"},
    {"Moreau", "Moreau"},
    {"Eriksson", "Eriksson"},
    {"Yamamoto", "Yamamoto"},
    {"OBrien", "O'Brien"},
    {"SmithJones", "Smith-Jones"},
    {"Hansen", "Hansen"},
    {"Virtanen", "Virtanen"},
    {"Papadopoulos", "Papadopoulos"},
    {"Mueller", "M\xC3\xBCller"},
    {"Garcia",
     "Garc\xC3\xAD"
     "a"},
    {"Novak", "Nov\xC3\xA1k"},
    {"Soerensen", "S\xC3\xB8rensen"},
}};
inline constexpr std::size_t kPlainFamilyNames = 36;

inline constexpr std::array<std::string_view, 24> kGivenNames{
    "John",   "Maria",  "Peter",  "Anna",   "Thomas",   "Li",   "Kenji", "Olga",
    "Pierre", "Ingrid", "Carlos", "Ruth",   "Jean-Luc", "Emma", "David", "Yuki",
    "Hans",   "Sofia",  "Igor",   "Claire", "Rajesh",   "Mary", "Erik",  "Wei"};

inline constexpr std::array<std::string_view, 64> kWords{
    "structure",   "dynamics",   "of",          "the",         "molecular",  "quantum",
    "water",       "clusters",   "in",          "high",        "resolution", "spectroscopy",
    "and",         "theory",     "transfer",    "energy",      "for",        "excited",
    "states",      "surface",    "potential",   "calculation", "with",       "proton",
    "hydrogen",    "bonded",     "complexes",   "from",        "infrared",   "laser",
    "cooling",     "ultracold",  "gases",       "on",          "metal",      "oxide",
    "catalysis",   "reaction",   "rate",        "constants",   "at",         "low",
    "temperature", "measured",   "by",          "scattering",  "density",    "functional",
    "methods",     "a",          "new",         "approach",    "to",         "protein",
    "folding",     "simulation", "electronic",  "correlation", "nanoscale",  "materials",
    "photon",      "emission",   "vibrational", "tunnelling"};

inline constexpr std::array<std::string_view, 12> kTitleMarks{"{H$_2$O}",
                                                              "{DNA}",
                                                              "{NMR}",
                                                              "$^{13}$C",
                                                              "{\\it ab initio}",
                                                              "{Schr{\\\"o}dinger}",
                                                              "CO$_2$",
                                                              "$\\alpha$",
                                                              "\\emph{in situ}",
                                                              "{X}-ray",
                                                              "{Monte Carlo}",
                                                              "$T_1 \\& T_2$"};

inline constexpr std::array<std::string_view, 12> kMonths{"jan", "feb", "mar", "apr", "may", "jun",
                                                          "jul", "aug", "sep", "oct", "nov", "dec"};
inline constexpr std::array<std::string_view, 8> kPublishers{
    "Academic Press", "Clarendon Press",  "Harbour Books",  "North Sea Publishing",
    "Meridian Press", "University Press", "Wiley and Sons", "Springer"};
inline constexpr std::array<std::string_view, 8> kPlaces{
    "New York", "Berlin", "Oxford", "Tokyo", "Paris", "Warsaw", "Uppsala", "Toronto"};

}  // namespace tarvel::bench
