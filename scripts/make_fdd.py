#!/usr/bin/env python3
"""Writes share/fom/VistrelControl.xml, the object model of the IEEE 1516-2000 flavour.

The file holds our ViewControl interaction and the RPR FOM 2.0 entity classes a viewer
follows (BaseEntity and all of PhysicalEntity), taken from the published modules in
share/fom/rpr-fom-2.0 with every attribute in the modules' order, transportation and
order: an RTI that merges our model with the published modules (a federate of the other
API, an outside RPR federate) refuses a class that differs in any of them. The datatypes
those attributes use are carried along, written in the 1516-2000 format.

Run it again whenever the modules or the ViewControl part change; the result is committed
so that a build needs no Python.
    scripts/make_fdd.py            # rewrites the file
    scripts/make_fdd.py --check    # exit 1 when the committed file is not what it writes
"""
import os
import sys
import xml.etree.ElementTree as ET
from xml.sax.saxutils import quoteattr

NS = {"o": "http://standards.ieee.org/IEEE1516-2010"}
ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
RPR = os.path.join(ROOT, "share", "fom", "rpr-fom-2.0")
MODULES = ["RPR-Foundation_v2.0.xml", "RPR-Enumerations_v2.0.xml", "RPR-Base_v2.0.xml",
           "RPR-Physical_v2.0.xml"]
OUT = os.path.join(ROOT, "share", "fom", "VistrelControl.xml")

# The standard's own types: the 1516-2000 MIM has them, so they are not repeated.
HLA_PREFIX = "HLA"


def text(e, tag, default="NA"):
    v = e.findtext("o:" + tag, None, NS)
    return default if v is None else " ".join(v.split())


def attrs(pairs):
    return " ".join("%s=%s" % (k, quoteattr(v)) for k, v in pairs)


def load():
    trees = [ET.parse(os.path.join(RPR, m)).getroot() for m in MODULES]
    types = {}
    for t in trees:
        dt = t.find("o:dataTypes", NS)
        if dt is None:
            continue
        for group in dt:
            for d in group:
                types[text(d, "name")] = (group.tag.split("}")[1], d)
    return trees, types


def merged_classes(trees):
    """The object classes of all modules, merged by name: a module that only names a class
    (Physical names BaseEntity) adds nothing to it."""
    classes = {}
    order = []

    def walk(e, parent):
        name = text(e, "name")
        if name not in classes:
            classes[name] = {"parent": parent, "elem": None, "children": []}
            order.append(name)
            if parent:
                classes[parent]["children"].append(name)
        if e.find("o:attribute", NS) is not None or e.find("o:sharing", NS) is not None:
            classes[name]["elem"] = e
        for c in e.findall("o:objectClass", NS):
            walk(c, name)

    for t in trees:
        objs = t.find("o:objects", NS)
        if objs is not None:
            for c in objs.findall("o:objectClass", NS):
                walk(c, None)
    return classes


def wanted(classes):
    keep = {"BaseEntity"}
    stack = ["PhysicalEntity"]
    while stack:
        n = stack.pop()
        keep.add(n)
        stack.extend(classes[n]["children"])
    return keep


def uses(kind, d):
    if kind == "simpleDataTypes":
        return [text(d, "representation")]
    if kind == "enumeratedDataTypes":
        return [text(d, "representation")]
    if kind == "arrayDataTypes":
        return [text(d, "dataType")]
    if kind == "fixedRecordDataTypes":
        return [text(f, "dataType") for f in d.findall("o:field", NS)]
    if kind == "variantRecordDataTypes":
        return [text(d, "dataType")] + [text(a, "dataType") for a in d.findall("o:alternative", NS)]
    return []


def closure(start, types):
    seen = set()
    stack = list(start)
    while stack:
        n = stack.pop()
        if n in seen or n == "NA" or n.startswith(HLA_PREFIX):
            continue
        if n not in types:
            sys.exit("make_fdd: datatype %s is in no module" % n)
        seen.add(n)
        stack.extend(uses(*types[n]))
    return seen


def write_datatype(kind, d, out):
    name = text(d, "name")
    sem = text(d, "semantics", "")
    if kind == "basicDataRepresentations":
        out.append("      <basicData %s/>" % attrs([
            ("name", name), ("size", text(d, "size")), ("interpretation", text(d, "interpretation")),
            ("endian", text(d, "endian")), ("encoding", text(d, "encoding"))]))
    elif kind == "simpleDataTypes":
        out.append("      <simpleData %s/>" % attrs([
            ("name", name), ("representation", text(d, "representation")),
            ("units", text(d, "units")), ("resolution", text(d, "resolution")),
            ("accuracy", text(d, "accuracy")), ("semantics", sem)]))
    elif kind == "enumeratedDataTypes":
        out.append("      <enumeratedData %s>" % attrs([
            ("name", name), ("representation", text(d, "representation")), ("semantics", sem)]))
        for e in d.findall("o:enumerator", NS):
            out.append("        <enumerator %s/>" % attrs([
                ("name", text(e, "name")), ("values", text(e, "value"))]))
        out.append("      </enumeratedData>")
    elif kind == "arrayDataTypes":
        out.append("      <arrayData %s/>" % attrs([
            ("name", name), ("dataType", text(d, "dataType")),
            ("cardinality", text(d, "cardinality")), ("encoding", text(d, "encoding")),
            ("semantics", sem)]))
    elif kind == "fixedRecordDataTypes":
        out.append("      <fixedRecordData %s>" % attrs([
            ("name", name), ("encoding", text(d, "encoding")), ("semantics", sem)]))
        for f in d.findall("o:field", NS):
            out.append("        <field %s/>" % attrs([
                ("name", text(f, "name")), ("dataType", text(f, "dataType")),
                ("semantics", text(f, "semantics", ""))]))
        out.append("      </fixedRecordData>")
    elif kind == "variantRecordDataTypes":
        out.append("      <variantRecordData %s>" % attrs([
            ("name", name), ("discriminant", text(d, "discriminant")),
            ("dataType", text(d, "dataType")), ("encoding", text(d, "encoding")),
            ("semantics", sem)]))
        for a in d.findall("o:alternative", NS):
            out.append("        <alternative %s/>" % attrs([
                ("enumerator", text(a, "enumerator")), ("name", text(a, "name")),
                ("dataType", text(a, "dataType")), ("semantics", text(a, "semantics", ""))]))
        out.append("      </variantRecordData>")


HEADER = """<?xml version="1.0" encoding="UTF-8"?>
<!-- Federation object model of the vistrel control interface, IEEE 1516-2000 format.
     Control PDUs travel whole, as the single opaque parameter of one interaction class.
     The entity classes below (BaseEntity and PhysicalEntity with all their subclasses),
     their attributes and datatypes are taken unchanged from the Real-time Platform
     Reference FOM 2.0 modules (SISO-STD-001.1-2015) in rpr-fom-2.0/ beside this file.
     Reprinted with permission from SISO Inc.
     Written by scripts/make_fdd.py: edit that, not this file. -->
<objectModel DTDversion="1516.2" name="VistrelControl" type="FOM" version="1.1"
             modificationDate="2026-11-25" purposeReference="Remote control of a 3D viewer">
  <objects>
    <objectClass name="HLAobjectRoot" sharing="Neither">
      <attribute name="HLAprivilegeToDeleteObject" dataType="HLAtoken" updateType="Static"
                 updateCondition="NA" ownership="DivestAcquire" sharing="PublishSubscribe"
                 dimensions="NA" transportation="HLAreliable" order="TimeStamp"/>"""

MIDDLE = """    </objectClass>
  </objects>
  <interactions>
    <!-- The root's order is the one the IEEE 1516-2010 MIM gives it: a federate of that
         API joins a federation made from this model with its own module, and an RTI that
         merges the two refuses a root whose properties differ. -->
    <interactionClass name="HLAinteractionRoot" sharing="Neither" dimensions="NA"
                      transportation="HLAreliable" order="TimeStamp">
      <interactionClass name="ViewControl" sharing="PublishSubscribe" dimensions="NA"
                        transportation="HLAreliable" order="Receive"
                        semantics="One view-control or draw-control PDU, header and body">
        <parameter name="ViewControlPdu" dataType="HLAopaqueData"
                   semantics="The complete control PDU as sent"/>
      </interactionClass>
    </interactionClass>
  </interactions>
  <dimensions/>
  <transportations>
    <transportation name="HLAreliable" description="Provide reliable delivery of data"/>
    <transportation name="HLAbestEffort" description="Make an effort to deliver data"/>
  </transportations>
  <switches>
    <autoProvide isEnabled="false"/>
    <conveyRegionDesignatorSets isEnabled="false"/>
    <attributeScopeAdvisory isEnabled="false"/>
    <attributeRelevanceAdvisory isEnabled="false"/>
    <objectClassRelevanceAdvisory isEnabled="false"/>
    <interactionRelevanceAdvisory isEnabled="false"/>
    <serviceReporting isEnabled="false"/>
  </switches>
  <dataTypes>"""

KINDS = ["basicDataRepresentations", "simpleDataTypes", "enumeratedDataTypes", "arrayDataTypes",
         "fixedRecordDataTypes", "variantRecordDataTypes"]


def generate():
    trees, types = load()
    classes = merged_classes(trees)
    keep = wanted(classes)
    out = [HEADER]
    used = []

    def emit(name, depth):
        c = classes[name]
        e = c["elem"]
        pad = "  " * depth
        out.append("%s<objectClass %s>" % (pad, attrs([
            ("name", name), ("sharing", text(e, "sharing")),
            ("semantics", text(e, "semantics", ""))])))
        for a in e.findall("o:attribute", NS):
            used.append(text(a, "dataType"))
            out.append("%s  <attribute %s/>" % (pad, attrs([
                ("name", text(a, "name")), ("dataType", text(a, "dataType")),
                ("updateType", text(a, "updateType")),
                ("updateCondition", text(a, "updateCondition")),
                ("ownership", text(a, "ownership")), ("sharing", text(a, "sharing")),
                ("dimensions", "NA"), ("transportation", text(a, "transportation")),
                ("order", text(a, "order")), ("semantics", text(a, "semantics", ""))])))
        for child in c["children"]:
            if child in keep:
                emit(child, depth + 1)
        out.append("%s</objectClass>" % pad)

    emit("BaseEntity", 3)
    out.append(MIDDLE)
    needed = closure(used, types)
    for kind in KINDS:
        out.append("    <%s>" % kind)
        if kind == "arrayDataTypes":
            out.append('      <arrayData name="HLAopaqueData" dataType="HLAbyte" '
                       'cardinality="Dynamic" encoding="HLAvariableArray" '
                       'semantics="Uninterpreted sequence of bytes"/>')
        for name in sorted(n for n in needed if types[n][0] == kind):
            write_datatype(kind, types[name][1], out)
        out.append("    </%s>" % kind)
    out.append("  </dataTypes>\n  <notes/>\n</objectModel>\n")
    return "\n".join(out)


def main():
    result = generate()
    if "--check" in sys.argv[1:]:
        with open(OUT, encoding="utf-8") as f:
            if f.read() != result:
                print("make_fdd: %s is not what scripts/make_fdd.py writes" % OUT)
                return 1
        return 0
    with open(OUT, "w", encoding="utf-8") as f:
        f.write(result)
    return 0


if __name__ == "__main__":
    sys.exit(main())
