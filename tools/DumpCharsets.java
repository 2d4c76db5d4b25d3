import java.nio.ByteBuffer;
import java.nio.CharBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.Charset;
import java.nio.charset.CharsetDecoder;
import java.nio.charset.CharsetEncoder;

/**
 * Prints what the JDK's single-byte charsets hold, for peer_tables.py: "C name alias..." for each
 * charset, and for those whose characters are one byte each "D byte unit..." and "E unit byte".
 */
public class DumpCharsets {
  public static void main(String[] arguments) {
    StringBuilder out = new StringBuilder();
    for (Charset charset : Charset.availableCharsets().values()) {
      out.append("C ").append(charset.name());
      for (String alias : charset.aliases()) out.append(' ').append(alias);
      out.append('\n');
      if (charset.canEncode() && charset.newEncoder().maxBytesPerChar() == 1.0f) dump(charset, out);
    }
    System.out.print(out);
  }

  static void dump(Charset charset, StringBuilder out) {
    CharsetDecoder decoder = charset.newDecoder();
    for (int code = 0; code < 256; ++code) {
      try {
        CharBuffer text = decoder.decode(ByteBuffer.wrap(new byte[] {(byte) code}));
        out.append(String.format("D %02X", code));
        while (text.hasRemaining()) out.append(String.format(" %04X", (int) text.get()));
        out.append('\n');
      } catch (CharacterCodingException unassigned) {
      }
    }
    CharsetEncoder encoder = charset.newEncoder();
    for (int unit = 0; unit < 0x10000; ++unit) {
      try {
        ByteBuffer code = encoder.encode(CharBuffer.wrap(new char[] {(char) unit}));
        if (code.remaining() == 1) out.append(String.format("E %04X %02X\n", unit, code.get() & 0xFF));
      } catch (CharacterCodingException unmappable) {
      }
    }
  }
}
