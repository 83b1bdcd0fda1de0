"""The manifest: what Windows asks of it, and that the package has what it names."""

import struct
import unittest

import support
from msix import logo, png
from msix.manifest import publisher_id

# An edit of the manifest, and words of the message that it must lead to.
REFUSED = {
    "a second application": ("</Applications>", '<Application Id="B"/></Applications>', "2 <Application> where 1"),
    "a misspelt general capability": ('"internetClient"', '"internetCleint"', 'Name="internetCleint"'),
    "a misspelt restricted capability": ('"runFullTrust"', '"runFulltrust"', 'Name="runFulltrust"'),
    "a capability twice": (
        '<Capability Name="internetClient"/>', '<Capability Name="internetClient"/>' * 2, "two <Capability>"),
    "capabilities in another order": (
        '<Capability Name="internetClient"/>\n        <rescap:Capability Name="runFullTrust"/>',
        '<rescap:Capability Name="runFullTrust"/>\n        <Capability Name="internetClient"/>', "before a general one"),
    "no capabilities": ("Capabilities>", "Ignored>", "no <Capabilities>"),
    "a version of three parts": ('Version="1.0.0.0"', 'Version="1.0.0"', 'Version="1.0.0"'),
    "a version above 65535": ('Version="1.0.0.0"', 'Version="1.0.65536.0"', "1.0.65536.0"),
    "a version with a leading zero": ('Version="1.0.0.0"', 'Version="1.00.0.0"', "1.00.0.0"),
    "a name with a blank": ('Name="Velmo.NotificationClient"', 'Name="Velmo Client"', "Velmo Client"),
    "a name of two characters": ('Name="Velmo.NotificationClient"', 'Name="Ve"', 'Name="Ve"'),
    "a name of 51 characters": ('Name="Velmo.NotificationClient"', f'Name="{"V" * 51}"', "V" * 51),
    "a publisher that is no distinguished name": ('"CN=Velmo"', '"Velmo"', 'Publisher="Velmo"'),
    "a publisher without a blank between its parts": ('"CN=Velmo"', '"CN=Velmo,O=Velmo"', "CN=Velmo,O=Velmo"),
    "no publisher": (' Publisher="CN=Velmo"', "", "no Publisher"),
    "another architecture": ('"x64"', '"arm64"', "arm64"),
    "an unknown attribute": ("<Properties>", '<Properties Mark="1">', "attribute Mark"),
    "an unknown element": ("<Properties>", "<Properties><Frame/>", "Frame"),
    "an element of a newer namespace": (
        "<Properties>", '<Properties><n:Frame xmlns:n="http://schemas.microsoft.com/appx/manifest/uap/windows10/10"/>',
        "uap/windows10/10"),
    "text where none belongs": ("<Properties>", "<Properties>x", "<Properties> has text"),
    "an image that is no image": ("Square44x44Logo.png", "Square44x44Logo.gif", "Square44x44Logo.gif"),
    "a colour that is none": ('"transparent"', '"blueish"', "blueish"),
    "an executable that is none": ('Executable="VelmoNotificationClient.exe"', 'Executable="a.dll"', "a.dll"),
    "a protocol in upper case": ('"velmo-notification"', '"Velmo-notification"', "Velmo-notification"),
    "a protocol of one character": ('"velmo-notification"', '"v"', '"v"'),
    "an app service of one character": ('"com.velmo.notification"', '"c"', '"c"'),
    "an app service with a task of its own": (
        'Category="windows.appService"', 'Category="windows.appService" EntryPoint="A.B"', "attribute EntryPoint"),
    "a misspelt category": ('"windows.protocol"', '"windows.protocl"', "windows.protocl"),
    "a background task declared": ('"windows.protocol"', '"windows.backgroundTasks"', "windows.backgroundTasks"),
    "a parameter group twice": ('GroupId="CURIUpdated"', 'GroupId="LaunchHOV"', 'GroupId="LaunchHOV"'),
    "a parameter group without parameters": (' Parameters="/CURIUpdated"', "", "no Parameters"),
    "a class twice": (
        '"VelmoNotificationClient.MainPage" ThreadingModel="both"/>',
        '"VelmoNotificationClient.MainPage" ThreadingModel="both"/><ActivatableClass '
        'ActivatableClassId="VelmoNotificationClient.MainPage" ThreadingModel="both"/>', "two <ActivatableClass>"),
    "a threading model that is none": ('ThreadingModel="both"', 'ThreadingModel="free"', "free"),
    "an oldest system on which the app does not run": ("10.0.17763.0", "10.0.16299.0", "MinVersion is below"),
    "a newest system below the oldest": ("10.0.22621.0", "10.0.17762.0", "MaxVersionTested is below"),
    "a device of another kind": ('"Windows.Desktop"', '"Windows.Mobile"', "Windows.Mobile"),
    "no description of the visuals": (
        'Description="Push notifications and background tasks for the Velmo suite"', "", "no Description"),
    "another root": ("manifest/foundation/windows10\"", "manifest/foundation/windows8\"", "its root is"),
    "a document type": ("<Package", "<!DOCTYPE Package><Package", "document type"),
    "an element without an end": ("</Package>", "", "not well-formed"),
    "an executable that is not there": ('="VelmoNotificationClient.exe"', '="Other.exe"', "Other.exe: AppxManifest.xml"),
    "a desktop component that is not there": ("HOV\\Tessaline.exe", "HOV\\Other.exe", "HOV\\Other.exe: AppxM"),
    "an image that is not there": ("Assets\\StoreLogo.png", "Assets\\Other.png", "Assets\\Other.png: AppxM"),
    "a server that is not there": (
        "<Path>VelmoNotificationClient.exe", "<Path>Server.dll", "Server.dll: AppxM"),
    "an entry point that the executable does not know": (
        'EntryPoint="VelmoNotificationClient.App"', 'EntryPoint="VelmoNotificationClient.Ap"', "entry point's class"),
    "a class that the executable does not know": ("Client.MainPage", "Client.OtherPage", "Client.OtherPage"),
}  # fmt: skip


class ManifestRules(unittest.TestCase):
    def test_refuses(self):
        for what, (old, new, words) in REFUSED.items():
            with self.subTest(what):
                found = support.problems_of_manifest(old, new)
                self.assertTrue(any(words in text for text in found), found)

    def test_takes_other_values_that_windows_takes(self):
        for old, new in (
            ("CN=Velmo", "CN=Velmo Software, O=&quot;Velmo, Ltd.&quot;, L=Pune, C=IN"),
            ("velmo-notification", "v2"),
            ('"transparent"', '"#1F3A5F"'),
            ('Language="en-US"/>', 'Language="en-US"/><Resource Language="de"/>'),
        ):
            with self.subTest(new):
                self.assertEqual(support.problems_of_manifest(old, new), [])

    def test_a_second_full_trust_component_is_refused(self):
        text = support.manifest_bytes().decode("utf-8")
        start = text.index("<desktop:Extension")
        end = text.index("</desktop:Extension>") + len("</desktop:Extension>")
        second = text[start:end].replace('GroupId="', 'GroupId="Other')
        end = "</Extensions>\n        </Application>"
        found = support.problems_of_manifest(end, second + end)
        self.assertTrue(any("two windows.fullTrustProcess" in text for text in found), found)

    def test_what_is_not_utf_8_is_refused(self):
        found = support.problems_of({support.MANIFEST: support.manifest_bytes().replace(b"Push", b"P\xfcsh")})
        self.assertTrue(any("not UTF-8" in text for text in found), found)

    def test_the_markup_that_the_executable_loads_must_be_there(self):
        found = support.problems_of({support.MARKUP: None})
        self.assertEqual(len(found), 1)
        self.assertIn("MainPage.xaml: VelmoNotificationClient.exe names this file", found[0])

    def test_the_publisher_id_is_that_of_the_package_family(self):
        self.assertEqual(publisher_id("CN=Velmo"), "m7dy57p66fpam")


class Images(unittest.TestCase):
    def refused(self, data, words):
        found = support.problems_of({"Assets\\Square44x44Logo.png": data})
        self.assertTrue(any("Square44x44Logo.png:" in text and words in text for text in found), found)

    def test_an_image_of_another_size_is_refused(self):
        self.refused(logo.draw(45), "45 x 45 pixels")

    def test_an_image_that_is_not_square_is_refused(self):
        image = bytearray(png.write(44, lambda x, y: (0, 0, 0, 0)))
        struct.pack_into(">I", image, 20, 43)
        struct.pack_into(">I", image, 29, png.zlib.crc32(bytes(image[12:29])))
        self.refused(bytes(image), "44 x 43 pixels")

    def test_an_image_that_is_cut_or_damaged_is_refused(self):
        whole = logo.draw(44)
        for size in range(len(whole)):
            with self.subTest(size=size), self.assertRaises(ValueError):
                png.read_size(whole[:size])
        self.refused(whole[:-20], "damaged")
        self.refused(whole[:60] + bytes([whole[60] ^ 1]) + whole[61:], "damaged")
        self.refused(b"GIF89a", "no PNG")

    def test_an_image_that_is_too_large_is_refused(self):
        whole = logo.draw(44)
        filler = png._chunk(b"tEXt", bytes(205000))
        self.refused(whole[:-12] + filler + whole[-12:], "Windows takes 204800")

    def test_the_logo_is_drawn_in_any_size_with_clear_corners(self):
        for side in (16, 44, 50, 150):
            image = logo.draw(side)
            self.assertEqual(png.read_size(image), (side, side))
            self.assertEqual(logo._pixel(side, 0, 0)[3], 0)
            self.assertEqual(logo._pixel(side, side // 2, side // 2), (255, 255, 255, 255))


if __name__ == "__main__":
    unittest.main()
