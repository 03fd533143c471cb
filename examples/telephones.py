#!/usr/bin/python3
"""Lists the telephone numbers of card files, and saves the photos: telephones.py FILE..."""

import sys

import pxcards

for path in sys.argv[1:]:
    for card in pxcards.read(path):
        for telephone in card.telephones:
            print(card.name, telephone.value, ", ".join(telephone.types), sep="\t")
        for number, photo in enumerate(one.object for one in card.find("PHOTO") if one.object):
            with open(f"photo-{card.number}-{number}", "wb") as file:
                file.write(photo.read())
