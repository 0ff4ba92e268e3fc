// Small XML settings documents (the product settings, the language list):
// opening one from a file or a text, finding elements by name, reading and
// changing attribute values. Nodes are IXMLDOMNodePtr (see
// platform/xml_node.h); a null node means "not found" or "could not open",
// and every function takes one quietly.
//
//   IXMLDOMNodePtr main = GetXMLMainNodeObjectFromFile(L"Languages.xml");
//   for (IXMLDOMNodePtr l = GetSimpleChildElementNode(main, L"LANGUAGE"); l != nullptr;
//        l = GetSimpleNextElementNode(l, L"LANGUAGE")) {
//     BSTR library = GetAttributeValue(l, L"LanguageDLL");
//     ...
//     SysFreeString(library);
//   }
//
// Attribute values are stored encoded: '&', '<', '>' and '"' as numeric
// character references ("&#x26;", "&#x3c;", "&#x3e;", "&#x22;") and a line
// feed as "@#NwLn#@"; reading decodes those and also the named entities
// ("&amp;", "&lt;", "&gt;", "&quot;"). Element names and attribute values are
// handled in 256-character work buffers: what lies beyond 255 characters is
// cut. These functions never save a document.
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/xml_node.h"

// The main element of the document in the file, or null when it cannot be
// read or is not well formed.
KORVALEN_API IXMLDOMNodePtr GetXMLMainNodeObjectFromFile(const wchar_t* path);
// The main element of the document in the text, or null.
KORVALEN_API IXMLDOMNodePtr GetXMLMainNodeObjectFromString(const wchar_t* text);

// The first direct child element whose name matches, without regard to case;
// null when none does.
KORVALEN_API IXMLDOMNodePtr GetSimpleChildElementNode(IXMLDOMNodePtr node, const wchar_t* name);
// The first following sibling element whose name matches (the node itself is
// not one), without regard to case; null when none does.
KORVALEN_API IXMLDOMNodePtr GetSimpleNextElementNode(IXMLDOMNodePtr node, const wchar_t* name);

// Appends the main element of the XML text as the node's last child; a text
// that does not parse appends nothing.
KORVALEN_API void AppendChildXMLText(IXMLDOMNodePtr node, const wchar_t* text);

// The decoded value of the attribute of that name (compared with regard to
// case), as a new BSTR the caller frees; "" when the node is null or has no
// such attribute.
KORVALEN_API BSTR GetAttributeValue(IXMLDOMNodePtr node, const wchar_t* name);
// The decoded value of an attribute node, as a new BSTR; "" for a null node
// or one without a text value.
KORVALEN_API BSTR GetAttributeNodeValue(IXMLDOMNodePtr attribute);
// Stores the encoded value in an attribute the node has; a missing attribute
// is not created.
KORVALEN_API void ChangeAttributeValue(IXMLDOMNodePtr node, const wchar_t* name,
                                       const wchar_t* value);
// The encoded form of source into destination, which holds 256 characters.
KORVALEN_API void TranslateTxtAttributeValue(const wchar_t* source, wchar_t* destination);
