"""What a person sees in vCard and vCalendar files.

    import pxcards

    for card in pxcards.read("ann.vcf"):
        print(card.name, [one.value for one in card.telephones])

`read` takes a path, bytes or a binary file and gives a record for each section: a card, or a part
of a calendar. vCard 2.1, 3.0 and 4.0, vCalendar 1.0 and iCalendar are read, in any character set.
`frame` gives files and folders as a pandas data frame.
The package stands on the shared library libpx_cards: the one that the environment variable
PX_LIBRARY names, or else the system's.

Nothing that comes from a card is to be trusted: not the title of an attachment, not a URL.
"""

from pxcards._frame import frame
from pxcards._input import Source
from pxcards._library import Error, Result, version
from pxcards._reader import Fault, FaultWarning, Reader, read
from pxcards._records import Object, Property, Section, Typed

__all__ = ["Error", "Fault", "FaultWarning", "Object", "Property", "Reader", "Result", "Section",
           "Source", "Typed", "frame", "read", "version"]
