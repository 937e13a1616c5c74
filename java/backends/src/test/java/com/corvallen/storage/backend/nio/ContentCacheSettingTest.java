package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import java.util.HashMap;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.NullSource;
import org.junit.jupiter.params.provider.ValueSource;

/** The values that the setting of the content cache accepts. */
class ContentCacheSettingTest {
    private final ContentCache cache = new ContentCache();

    @ParameterizedTest
    @ValueSource(strings = {"true", "True", " true "})
    void trueSwitchesItOn(String value) throws ProviderException {
        cache.configure(setting(value));
        assertTrue(cache.isEnabled());
    }

    @ParameterizedTest
    @NullSource
    @ValueSource(strings = {"", " ", "false", "FALSE"})
    void falseAndNothingSwitchItOff(String value) throws ProviderException {
        cache.configure(setting("true"));
        cache.configure(setting(value));
        assertFalse(cache.isEnabled());
    }

    @ParameterizedTest
    @ValueSource(strings = {"1", "yes", "on", "truefalse"})
    void otherTextIsRefusedAndNamed(String value) {
        ProviderException failure =
                assertThrows(ProviderException.class, () -> cache.configure(setting(value)));
        assertEquals(ErrorCode.NOT_SUPPORTED, failure.getErrorCode());
        assertTrue(failure.getMessage().contains("\"" + value + "\""), failure.getMessage());
        assertFalse(cache.isEnabled());
    }

    @Test
    void otherSettingsArePassedOver() throws ProviderException {
        HashMap<String, String> settings = new HashMap<>();
        settings.put("another", "1");
        cache.configure(setting("true"));
        cache.configure(settings);
        cache.configure(new HashMap<>());
        assertTrue(cache.isEnabled());
    }

    private static HashMap<String, String> setting(String value) {
        HashMap<String, String> settings = new HashMap<>();
        settings.put("gds.enableContentCache", value);
        return settings;
    }
}
