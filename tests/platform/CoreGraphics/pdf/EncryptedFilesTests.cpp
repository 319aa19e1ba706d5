#include "CoreGraphics/pdf/Qpdf.h"
#include "support/PDFPages.h"

#include <gtest/gtest.h>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDFWriter.hh>

namespace {

enum class Cipher { RC4, AES128, AES256 };

/// A file with a red square, encrypted; its objects in compressed streams where the cipher is newer than
/// those.
std::string encrypted(Cipher cipher, const char* userPassword)
{
    const std::string bytes = pdfBytes("1 0 0 rg 4 4 8 8 re f");
    QPDF pdf;
    pdf.processMemoryFile("plain", bytes.data(), bytes.size());
    QPDFWriter writer(pdf);
    writer.setOutputMemory();
    switch (cipher) {
    case Cipher::RC4:
        writer.setR3EncryptionParametersInsecure(
            userPassword, "owner", true, true, true, true, true, true, qpdf_r3p_full);
        break;
    case Cipher::AES128:
        writer.setR4EncryptionParametersInsecure(
            userPassword, "owner", true, true, true, true, true, true, qpdf_r3p_full, true, true);
        break;
    case Cipher::AES256:
        writer.setR6EncryptionParameters(
            userPassword, "owner", true, true, true, true, true, true, qpdf_r3p_full, true);
        writer.setObjectStreamMode(qpdf_o_generate);
        break;
    }
    writer.write();
    const auto buffer = writer.getBufferSharedPointer();
    return {reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize()};
}

TEST(EncryptedPDF, OpensWithTheEmptyUserPassword)
{
    for (const Cipher cipher : {Cipher::RC4, Cipher::AES128, Cipher::AES256}) {
        SCOPED_TRACE(int(cipher));
        const auto document = openPDF(encrypted(cipher, ""));
        ASSERT_TRUE(document);
        EXPECT_EQ(drawPage(document, 1, 16, 16).pixel(8, 8), rgba(255, 0, 0, 255));
    }
}

TEST(EncryptedPDF, IsNullWithAnotherUserPassword)
{
    for (const Cipher cipher : {Cipher::RC4, Cipher::AES128, Cipher::AES256}) {
        SCOPED_TRACE(int(cipher));
        EXPECT_FALSE(openPDF(encrypted(cipher, "secret")));
    }
}

} // namespace
