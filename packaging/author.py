#!/usr/bin/env python3
"""Writes the installer's source and the registration-free manifests: packaging/author.py VERSION STAGE

STAGE/<component>-<bitness>.rows is what print-registration.exe tells about each component, STAGE/XTarn4x is the folder
of the files to be packed. The manifests go beside the components, the installer's source to STAGE/XTarn4x.wxs, and SQL
statements that complete the installer to STAGE/completion.sql."""
import pathlib
import re
import sys
import uuid
import xml.etree.ElementTree as xml

FEATURES = {"Driver": ["XTarn4x"], "Framework": ["Seamcfg", "Seamlib", "Conduit"]}
PROGRAMS = {"CommandLine": "tarn4x.exe", "Simulator": "tarn4x-sim.exe"}
# title and level of the installer's features; 2 is for those that have to be asked for
TITLES = {"Driver": ("Driver", 1), "Framework": ("Stand-alone framework", 1), "CommandLine": ("Command line", 1),
          "Simulator": ("Simulated receiver", 1), "Documents": ("Examples and documents", 1),
          "SerialPlaceholder": ("A serial port without a receiver, for a PC without serial ports", 2)}
# processor, bitness of the registry and of the program folder
PLATFORMS = {"x64": ("amd64", "yes", "ProgramFiles64Folder"), "x86": ("x86", "no", "ProgramFilesFolder")}
# The identities of components follow from their names, so that a later version replaces the same ones.
UPGRADE_CODE = uuid.UUID("f0a9a9f9-5b7c-4c0e-9c8e-5d1f5e0e7a54")


def read_rows(stage, component, platform):
    """[(key, value name, data)]; the name is None for a key without values."""
    lines = (stage / f"{component}-{platform}.rows").read_text(encoding="utf-8").splitlines()
    return [tuple(line.split("\t")) if "\t" in line else (line, None, "") for line in lines]


def value(rows, key, name=""):
    return next((data for row, value_name, data in rows if row == key and value_name == name), "")


def keys_below(rows, folder):
    return sorted({match[1] for key, _, _ in rows if (match := re.match(rf"{folder}\\(\{{[^\\]*}})", key))})


def element(parent, tag, **attributes):
    return xml.SubElement(parent, tag, attributes)


def save(root, path):
    xml.indent(root)
    xml.ElementTree(root).write(path, encoding="utf-8", xml_declaration=True)


# ---- manifests ----

def new_manifest(name, version, processor):
    root = xml.Element("assembly", xmlns="urn:schemas-microsoft-com:asm.v1", manifestVersion="1.0")
    element(root, "assemblyIdentity", type="win32", name=name, version=f"{version}.0", processorArchitecture=processor)
    return root


def describe_component(root, component, rows):
    file = element(root, "file", name=f"{component}.dll")
    for clsid in keys_below(rows, "CLSID"):
        key = f"CLSID\\{clsid}"
        element(file, "comClass", clsid=clsid, progid=value(rows, f"{key}\\ProgID"), description=value(rows, key),
                threadingModel=value(rows, f"{key}\\InprocServer32", "ThreadingModel"),
                tlbid=value(rows, f"{key}\\TypeLib"))
    for libid in keys_below(rows, "TypeLib"):
        element(file, "typelib", tlbid=libid, version="1.0", helpdir="")
    for iid in keys_below(rows, "Interface"):
        key = f"Interface\\{iid}"
        element(root, "comInterfaceExternalProxyStub", iid=iid, name=value(rows, key),
                tlbid=value(rows, f"{key}\\TypeLib"), proxyStubClsid32=value(rows, f"{key}\\ProxyStubClsid32"))


def write_manifests(stage, version):
    for platform, (processor, _, _) in PLATFORMS.items():
        folder = stage / "XTarn4x" / platform
        if not folder.exists():
            continue
        program = new_manifest("measure", version, processor)
        for feature, components in FEATURES.items():
            assembly = new_manifest(f"XTarn4x.{feature}", version, processor)
            for component in components:
                describe_component(assembly, component, read_rows(stage, component, platform))
            save(assembly, folder / f"XTarn4x.{feature}.manifest")
            dependency = element(element(program, "dependency"), "dependentAssembly")
            dependency.append(assembly.find("assemblyIdentity"))
        save(program, folder / "measure.exe.manifest")


# ---- installer ----

def identifier(*names):
    return "_" + re.sub(r"[^A-Za-z0-9]", "_", "_".join(names))


def add_component(parent, name, win64="yes"):
    """Its identity follows from the name."""
    guid = str(uuid.uuid5(UPGRADE_CODE, name)).upper()
    return element(parent, "Component", Id=identifier("c", name), Guid=guid, Win64=win64)


def add_file(parent, path, name, win64="yes"):
    """One component with one file."""
    component = add_component(parent, name, win64)
    element(component, "File", Id=identifier("f", name), Name=path.name, Source=f"XTarn4x/{name}", KeyPath="yes")
    return component


def add_registry(component, rows):
    file = component.find("File").get("Id")
    for index, (key, name, data) in enumerate(rows):
        attributes = {"Name": name} if name else {}
        # A key without values gets an empty one, or it would stay behind when the product goes.
        data = f"[#{file}]" if data == "[file]" else re.sub(r"([\[\]{}])", r"[\\\1]", data)
        escaped = re.sub(r"([{}])", r"[\\\1]", key)
        element(component, "RegistryValue", Id=f"{component.get('Id')}_{index}", Root="HKCR", Key=escaped,
                Type="string", Value=data, **attributes)


def add_menu_entry(target, component, name, description):
    """A shortcut among the programs of the Start menu to the component's file; returns what completes it."""
    menu = element(target, "Directory", Id="ProgramMenuFolder")
    element(menu, "Directory", Id="MENU", Name="XTarn4x")
    file, identity = component.find("File"), identifier("m", name)
    element(file, "Shortcut", Id=identity, Directory="MENU", Name=name, Description=description)
    element(component, "RemoveFolder", Id="MENU", On="uninstall")
    return [update("Shortcut", "Shortcut", identity, Target=f"[#{file.get('Id')}]"),
            update("RemoveFile", "FileKey", "MENU", DirProperty="MENU")]


def add_placeholder(target):
    """The component that names a serial port on which nobody answers, for the user who installs."""
    component = add_component(target, "placeholder")
    element(component, "RegistryValue", Id="placeholder", Root="HKCU", Key="Software\\Conduit\\Ports", Name="COM16",
            Type="string", Value="none", KeyPath="yes")
    return component


def give_way(product, component, rows):
    """Looks on the user's machine for the classes that the component's ProgIDs lead to; returns the condition under
    which they are ours or none, in the 255 characters that a condition may have."""
    conditions = []
    for index, clsid in enumerate(keys_below(rows, "CLSID")):
        name = f"{component[-1]}{index}".upper()
        if product.find(f"Property[@Id='{name}']") is None:
            progid = value(rows, f"CLSID\\{clsid}\\ProgID")
            element(element(product, "Property", Id=name), "RegistrySearch", Id=identifier("s", progid), Root="HKCR",
                    Key=f"{progid}\\CLSID", Name="", Type="raw")
        conditions.append(f'{name}~="{clsid}" OR NOT {name}')
    return f"TAKEOVER OR ({') AND ('.join(conditions)})"


def update(table, key, identity, **values):
    changes = ", ".join(f"`{column}` = '{text}'" for column, text in values.items())
    return f"UPDATE `{table}` SET {changes} WHERE `{key}` = '{identity}'\n"


def add_documents(home, folder, path):
    """The components of the files in the folder and below it, without the folders of the DLLs."""
    components = []
    for entry in sorted(folder.iterdir()):
        name = f"{path}{entry.name}"
        if entry.is_file():
            components.append(add_file(home, entry, name))
        elif name not in PLATFORMS:
            below = element(home, "Directory", Id=identifier("d", name), Name=entry.name)
            components += add_documents(below, entry, f"{name}/")
    return components


def write_installer(stage, version):
    files = stage / "XTarn4x"
    root = xml.Element("Wix", xmlns="http://schemas.microsoft.com/wix/2006/wi")
    product = element(root, "Product", Id="*", Name="XTarn4x", Language="1033", Version=version,
                      UpgradeCode=str(UPGRADE_CODE).upper(), Manufacturer="XTarn4x")
    element(product, "Package", InstallerVersion="200", Compressed="yes", InstallScope="perMachine",
            Description="COM driver for DVB-T test receivers, 64-bit and 32-bit")
    element(product, "MajorUpgrade", DowngradeErrorMessage="A later version of XTarn4x is installed.")
    element(product, "Media", Id="1", Cabinet="XTarn4x.cab", EmbedCab="yes")
    target = element(product, "Directory", Id="TARGETDIR", Name="SourceDir")

    # What wixl does not know: conditions of components, versions of files (a file without one never replaces one with),
    # shortcuts that lead to a file, folders to be removed, and which properties go along from the user's part of an
    # installation to the administrator's.
    completion = []
    contents = {feature: [] for feature in TITLES}
    for platform, (_, win64, programs) in PLATFORMS.items():
        home = element(element(target, "Directory", Id=programs), "Directory", Id=f"HOME_{platform}", Name="XTarn4x")
        for feature, names in FEATURES.items():
            for name in names if (files / platform).exists() else []:
                rows = read_rows(stage, name, platform)
                component = add_file(home, files / platform / f"{name}.dll", f"{platform}/{name}.dll", win64)
                add_registry(component, rows)
                contents[feature].append(component)
                identity = component.get("Id")
                completion.append(update("File", "Component_", identity, Version=f"{version}.0", Language="1033"))
                if feature == "Framework":
                    condition = give_way(product, name, rows)
                    completion.append(update("Component", "Component", identity, Condition=condition))
        for feature, name in PROGRAMS.items() if (files / platform).exists() else []:
            contents[feature].append(add_file(home, files / platform / name, f"{platform}/{name}", win64))
        if platform == "x64":
            contents["Documents"] = add_documents(home, files, "")
            completion += add_menu_entry(target, contents["Simulator"][0], "Simulated receiver",
                                         "A Tarn 4x receiver that answers at 127.0.0.1, port 5025")
            contents["SerialPlaceholder"] = [add_placeholder(home)]
    secure = ["WIX_DOWNGRADE_DETECTED", "WIX_UPGRADE_DETECTED", "TAKEOVER"]
    secure += [known.get("Id") for known in product.findall("Property")]
    completion.append(update("Property", "Property", "SecureCustomProperties", Value=";".join(secure)))
    (stage / "completion.sql").write_text("".join(completion))

    for name, components in contents.items():
        title, level = TITLES[name]
        feature = element(product, "Feature", Id=name, Title=title, Level=str(level))
        for component in components:
            element(feature, "ComponentRef", Id=component.get("Id"))
    save(root, stage / "XTarn4x.wxs")


def main():
    version, stage = sys.argv[1], pathlib.Path(sys.argv[2])
    write_manifests(stage, version)
    write_installer(stage, version)


main()
