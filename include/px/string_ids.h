/*
 * The string ids that the filter passes to SoEmitResourceString, with their meaning in English.
 *
 * The filter holds no text: a host shows its own for each id, in the language of its user. An id
 * stands for a property's label, a type or a field of a value; where it is used the styles tell
 * (px/output_routines.h). A host that meets an id that it doesn't know shows nothing.
 *
 * What the filter writes as it stands in the file, the name of an unknown property for one, comes
 * as characters instead.
 */
#ifndef PX_STRING_IDS_H
#define PX_STRING_IDS_H

typedef enum VcardStringId {
  /* Fields of an alarm, and properties of calendars. */
  VcardStringAlarmRunTime = 79355,     /* "Run time" */
  VcardStringAlarmSnoozeTime = 79356,  /* "Snooze time" */
  VcardStringAlarmRepeatCount = 79357, /* "Repeat count" */
  VcardStringAlarmSound = 79358,       /* "Sound" */
  VcardStringAlarmText = 79359,        /* "Text": what an alarm shows, runs or says */
  VcardStringAttendee = 79360,         /* "Attendee" */
  VcardStringAttachment = 79361,       /* "Attachment" */
  VcardStringSoundAlarm = 79362,       /* "Sound alarm" */
  VcardStringCreated = 79364,          /* "Created" */
  VcardStringCompleted = 79365,        /* "Completed" */
  VcardStringDescription = 79366,      /* "Description" */
  VcardStringDisplayAlarm = 79367,     /* "Display alarm" */
  VcardStringDue = 79368,              /* "Due" */
  VcardStringEnd = 79369,              /* "End" */
  VcardStringExceptionDates = 79370,   /* "Exception dates" */
  VcardStringExceptionRule = 79371,    /* "Exception rule" */
  VcardStringLastModified = 79372,     /* "Last modified" */
  VcardStringLocation = 79373,         /* "Location" */
  VcardStringMailAlarm = 79374,        /* "Mail alarm": M-ALARM and MALARM */
  VcardStringRecurrences = 79375,      /* "Recurrences" */
  VcardStringProcedureAlarm = 79376,   /* "Procedure alarm" */
  VcardStringRelatedTo = 79377,        /* "Related to" */
  VcardStringRecurrenceDates = 79378,  /* "Recurrence dates" */
  VcardStringRecurrenceRule = 79379,   /* "Recurrence rule" */
  VcardStringResources = 79380,        /* "Resources" */
  VcardStringSequenceNumber = 79381,   /* "Sequence number" */
  VcardStringStart = 79382,            /* "Start" */
  VcardStringTransparency = 79383,     /* "Transparency" */

  /* Rows of an attendee, and of a picture or a sound that isn't in the card. */
  VcardStringExpected = 79384,       /* "Expected" */
  VcardStringReplyRequested = 79385, /* "Reply requested" */
  VcardStringReferenceUrl = 79386, /* "URL": in place of a picture or a sound that lies elsewhere */
  VcardStringReferenceContentId = 79387, /* "Content ID": likewise */

  /* Properties of cards. */
  VcardStringAddress = 79388,            /* "Address" */
  VcardStringBirthday = 79391,           /* "Birthday" */
  VcardStringEmail = 79392,              /* "E-mail" */
  VcardStringName = 79393,               /* "Name": FN, the name as it is written */
  VcardStringGeographicPosition = 79394, /* "Geographic position" */
  VcardStringKey = 79395,                /* "Key" */
  VcardStringLogo = 79396,               /* "Logo" */
  VcardStringAddressLabel = 79397,       /* "Address label" */
  VcardStringMailProgram = 79398,        /* "Mail program" */
  VcardStringNameParts = 79399,          /* "Name parts": N, the name in fields */
  VcardStringNote = 79400,               /* "Note" */
  VcardStringOrganisation = 79401,       /* "Organisation" */
  VcardStringPhoto = 79402,              /* "Photo" */
  VcardStringRevised = 79403,            /* "Revised" */
  VcardStringRole = 79404,               /* "Role": ROLE, and the role of an attendee */
  VcardStringSound = 79405,              /* "Sound" */
  VcardStringTelephone = 79406,          /* "Telephone" */
  VcardStringTitle = 79407,              /* "Title" */
  VcardStringTimeZone = 79408,           /* "Time zone" */
  VcardStringUniqueId = 79409,           /* "Unique ID" */
  VcardStringUrl = 79410,                /* "URL" */
  VcardStringVersion = 79411,            /* "Version" */

  /* Fields of a name. */
  VcardStringFamilyName = 79412,      /* "Family name" */
  VcardStringGivenName = 79413,       /* "Given name" */
  VcardStringAdditionalNames = 79414, /* "Additional names" */
  VcardStringPrefix = 79415,          /* "Prefix" */
  VcardStringSuffix = 79416,          /* "Suffix" */

  /* Fields of an address. */
  VcardStringPostOfficeBox = 79417,   /* "Post office box" */
  VcardStringExtendedAddress = 79418, /* "Extended address" */
  VcardStringStreet = 79419,          /* "Street" */
  VcardStringCity = 79420,            /* "City" */
  VcardStringRegion = 79421,          /* "Region" */
  VcardStringPostalCode = 79422,      /* "Postal code" */
  VcardStringCountry = 79423,         /* "Country" */

  /* Types. */
  VcardStringDomestic = 79424,      /* "domestic" */
  VcardStringInternational = 79425, /* "international" */
  VcardStringPostal = 79426,        /* "postal" */
  VcardStringParcel = 79427,        /* "parcel" */
  VcardStringHome = 79428,          /* "home" */
  VcardStringWork = 79429,          /* "work" */
  VcardStringPreferred = 79430,     /* "preferred" */
  VcardStringVoice = 79431,         /* "voice" */
  VcardStringFax = 79432,           /* "fax" */
  VcardStringMessages = 79433,      /* "messages" */
  VcardStringCell = 79434,          /* "cell" */
  VcardStringPager = 79435,         /* "pager" */
  VcardStringBbs = 79436,           /* "BBS" */
  VcardStringModem = 79437,         /* "modem" */
  VcardStringCar = 79438,           /* "car" */
  VcardStringIsdn = 79439,          /* "ISDN" */
  VcardStringVideo = 79440,         /* "video" */
  VcardStringAol = 79441,           /* "AOL" */
  VcardStringAppleLink = 79442,     /* "AppleLink" */
  VcardStringAttMail = 79443,       /* "AT&T Mail" */
  VcardStringCompuServe = 79444,    /* "CompuServe" */
  VcardStringEWorld = 79445,        /* "eWorld" */
  VcardStringInternet = 79446,      /* "Internet" */
  VcardStringIbmMail = 79447,       /* "IBM Mail" */
  VcardStringMciMail = 79448,       /* "MCI Mail" */
  VcardStringPowerShare = 79449,    /* "PowerShare" */
  VcardStringProdigy = 79450,       /* "Prodigy" */
  VcardStringTelex = 79451,         /* "telex" */
  VcardStringX400 = 79452,          /* "X.400" */
  VcardStringX509 = 79453,          /* "X.509" */
  VcardStringPgp = 79454,           /* "PGP" */

  /* Others. */
  VcardStringUntitled = 79493,       /* "Untitled": an attachment without a file name */
  VcardStringPriority = 79543,       /* "Priority" */
  VcardStringSummary = 79609,        /* "Summary" */
  VcardStringMailAddress = 79745,    /* "Mail address" */
  VcardStringClassification = 85562, /* "Classification": CATEGORIES and CLASS */
  VcardStringStatus = 85564          /* "Status": STATUS, and the status of an attendee */
} VcardStringId;

#endif
