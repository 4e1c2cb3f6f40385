# SPDX-License-Identifier: MIT
"""The words that random libraries are made of."""

# Accented letters are written in UTF-8 here; `exports.py` writes them in a library's own way.
FIRST_NAMES = (
    "Anna", "Bob", "Carl", "Dieter", "Eva", "Fiona", "Georg", "Hanna", "Ivan", "Jean-Pierre",
    "Karin", "Lars", "Mary Jane", "Nils", "Olga", "Paul", "Qing", "Rosa", "Sven", "Thomas",
    "Ulrike", "Vera", "Wei-Ming", "Xavier", "Yuki", "Zoë", "André", "Björn", "Émile", "Øyvind",
    "Ștefan", "José María", "Christoph", "Philippe", "Ľudmila", "Ga\u0161per")
SURNAMES = (
    "Ackermann", "Berg", "Clarke", "Doe", "Elmer", "Fox", "Garcia Lopez", "Holm", "Ito", "Jones",
    "Keller", "Lindqvist", "Moe", "Nakamura", "O'Brien", "Poe", "Quist", "Roe", "Smith", "Tanaka",
    "Ueda", "Vogel", "Wang", "Xu", "Young", "Zimmer", "Müller", "Šimek", "Ångström", "Núñez",
    "Łukasz", "Sørensen", "Müller-Lüdenscheid", "Strauß", "Öztürk", "Pace")
PARTICLES = ("van der", "von", "de", "de la", "van", "di", "Van", "De", "Le")
SUFFIXES = ("Jr.", "Jr", "Sr.", "III")
BODIES = ("{The Harbour Collaboration}", "{World Tide Organization}", "Aristotle",
          "{Statistics Office}", "Plato")
ADJECTIVES = (
    "Electronic", "Layered", "Coastal", "Fast", "Random", "Nonlinear", "Hidden", "Sparse",
    "Thermal", "Early", "Distributed", "Elastic", "Rural", "Quantum", "Optimal", "Soft")
NOUNS = (
    "structure", "tides", "networks", "foam", "proteins", "estuaries", "graphs", "bridges",
    "plasmas", "markets", "glaciers", "oxides", "compilers", "ants", "spectra", "membranes",
    "surfaces", "rivers", "memory", "waves", "soils", "lattices", "voting", "clouds")
# Words that are a tag's name, or hold one: text may well mention them.
TAG_WORDS = (
    "the year of", "an author of", "twenty volumes of", "the journal of", "three pages on",
    "a note on", "the number of", "a review of", "the title of", "a school of", "the address of",
    "a series of", "this type of", "an institution of", "the file of", "keywords for",
    "the editor of", "publishers of", "an abstract of", "the month of")
MARKED_WORDS = (  # as titles hold them
    "{DNA}", "{DNA}s", "{NMR} spectra", "$\\alpha$-helices", "H$_2$O", "$10^{-3}$ mol",
    "\\textit{in vivo}", "{\\em in situ}", "{\\LaTeX} documents", "\\& co.", "50\\% of",
    "``quoted'' text", "{\\TeX}\\slash{}Pascal", "one\\emdash{}two", "a~tie", "x--y", "{\\ss}",
    "{Schr{\\\"o}dinger}", "caf{\\'e}", "\\ce{CO2}", "\\acro{PDF} files", "Na\\\"\\i ve", "C\\#")
ENDINGS = ("in {Europe}", "of {DNA}", "in {{New York}}", "with {C}", "by {\\TeX}")
BEGINNINGS = ("{DNA} and", "{The}", "{\\'E}tude of", "{A} {B} of")
ODD_WORDS = (  # that the operations may stumble over
    "smith@example.org, see {Jones}", "medium.com/@smith/a-{b}", "see @book and {others}",
    "a = b", "title = of", "f(x) = {x}", "100% sure", "tab\there", "a # b", "C:\\new\\text")
# Name, abbreviation, macro. Some are in the program's list, some in none.
JOURNALS = (
    ("Physical Review B", "Phys. Rev. B", "prb"),
    ("Physical Review Letters", "Phys. Rev. Lett.", "prl"),
    ("The Journal of Chemical Physics", "J. Chem. Phys.", "jcp"),
    ("Journal of Hydrology", "J. Hydrol.", "jhyd"),
    ("Nature", "Nature", "nat"),
    ("Science", "Science", "sci"),
    ("Proceedings of the American Mathematical Society", "Proc. Amer. Math. Soc.", "pams"),
    ("Journal f{\\\"u}r die reine und angewandte Mathematik", "J. Reine Angew. Math.", "crelle"),
    ("IEEE Transactions on Information Theory", "{IEEE} Trans. Inf. Theory", "tit"),
    ("Journal of the ACM", "J. ACM", "jacm"),
    ("Zeitschrift für Physik", "Z. Phys.", "zphys"),
    ("The Astrophysical Journal", "Astrophys. J.", "apj"),
    ("Annals of Coastal Tides", "Ann. Coast. Tides", "act"),
    ("Journal of Rivers, Foam and Ice", "J. Rivers, Foam Ice", "jrfi"),
    ("Angewandte Chemie International Edition", "Angew. Chem. Int. Ed.", "angew"),
    ("Revista Mexicana de Física", "Rev. Mex. Fis.", "rmf"))
PUBLISHERS = ("Springer", "Elsevier {BV}", "North-Holland", "Wiley \\& Sons", "Quayside Press",
              "Oxford University Press", "Association for Computing Machinery", "{IEEE}")
CITIES = ("Berlin", "New York, NY, USA", "Oxford", "Zürich", "Amsterdam", "Heidelberg")
SCHOOLS = ("University of Jena", "ETH Zürich", "Harbour College, Dept. of Physics", "MIT")
CONFERENCES = (
    "Proceedings of the 5th Conference on Foam", "Proc. of the Tidal Workshop, TW '09",
    "Advances in Rivers", "{ICFT} 2010: Fast Things, Oslo, Norway, May 3--5, 2010",
    "Title and Year: Proceedings of a Journal Workshop")
SENTENCES = (
    "We study {n} of {m} in detail.", "In recent years the volume of {n} fell by 12\\%.",
    "The authors show that {n} are stable.", "See also the journal, page 3, and its title.",
    "We find x = {x} and note that {n} depend on {m}.", "Results are discussed.",
    "This number is larger than that of any {m}.", "Keywords: {n}; {m}.", "A 5\\,nm film was used.",
    "Publisher: Quayside. Editor: P. Moe.", "The School of {n} reports on {m}.")
